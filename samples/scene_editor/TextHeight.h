#pragma once

class CFont;
class CWnd;

/// How high a line of text of the font is in the window, in pixels.
[[nodiscard]] int text_height(CWnd& window, CFont& font);
