#pragma once

// Messages between the platform's own windows. Their answers are 0 unless said otherwise.

inline constexpr unsigned WM_QUERYAFXWNDPROC = 0x0360;
inline constexpr unsigned WM_SIZEPARENT = 0x0361;        ///< lParam: AFX_SIZEPARENTPARAMS
inline constexpr unsigned WM_SETMESSAGESTRING = 0x0362;  ///< wParam: string id, lParam: text
inline constexpr unsigned WM_IDLEUPDATECMDUI = 0x0363;   ///< wParam: disable without handler
inline constexpr unsigned WM_COMMANDHELP = 0x0365;       ///< lParam: context
inline constexpr unsigned WM_HELPHITTEST = 0x0366;       ///< lParam: point; answer: context
inline constexpr unsigned WM_EXITHELPMODE = 0x0367;
inline constexpr unsigned WM_KICKIDLE = 0x036A;  ///< To a modal window on an empty queue.
inline constexpr unsigned WM_DISABLEMODAL = 0x036C;
inline constexpr unsigned WM_POPMESSAGESTRING = 0x0375;
