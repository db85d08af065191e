/* The program's numbers, for its sources and its resource script. */
#ifndef SCENE_EDITOR_RESOURCE
#define SCENE_EDITOR_RESOURCE

#define IDR_SCENE_EDITOR 128 /* Icon, menu, keys and title. */

#define ID_FILE_RELOAD 0x8001
#define ID_ENTRY_RENAME 0x8002
#define ID_ENTRY_DELETE 0x8003
#define ID_ENTRY_SELECT_ALL 0x8004
#define ID_VIEW_FILTER 0x8005
#define ID_VIEW_PARENT 0x8006
/* The ways of drawing a picture, in the order of GPixelMapView::DrawType, which begins with 1. */
#define ID_VIEW_DRAW_BASE 0x8010
#define ID_VIEW_DRAW_CENTERED 0x8011
#define ID_VIEW_DRAW_TOP_LEFT 0x8012
#define ID_VIEW_DRAW_FIT 0x8013
#define ID_VIEW_DRAW_STRETCH 0x8014
#define ID_DIAGNOSTICS_TIMES 0x8020
#define ID_DIAGNOSTICS_RESET 0x8021

#define ID_PANE_COUNTS 0x8100
#define ID_PANE_NAME 0x8101

#define IDC_DIRECTORIES 1001
#define IDC_FILTER 1002
#define IDC_ENTRIES 1003
#define IDC_PREVIEW 1004
#define IDC_TREE_SPLITTER 1005
#define IDC_PREVIEW_SPLITTER 1006

#endif
