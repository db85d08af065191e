/* The program's numbers, for its sources and its resource script. */
#ifndef SCENE_EDITOR_RESOURCE
#define SCENE_EDITOR_RESOURCE

#define IDR_SCENE_EDITOR 128 /* Icon, menu, keys and title. */
#define IDR_SCENE_KEYS 129   /* Keys while the scene has the focus; they come before the others. */

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
#define ID_VIEW_SCENE 0x8018
#define ID_VIEW_LIBRARY 0x8019
#define ID_DIAGNOSTICS_TIMES 0x8020
#define ID_DIAGNOSTICS_RESET 0x8021
/* What a faulty handler does, and where. */
#define ID_PROVOKE_FIRST 0x8030
#define ID_PROVOKE_READ 0x8030
#define ID_PROVOKE_WRITE 0x8031
#define ID_PROVOKE_DIVISION 0x8032
#define ID_PROVOKE_CALL 0x8033
#define ID_PROVOKE_INSTRUCTION 0x8034
#define ID_PROVOKE_TEXT 0x8035
#define ID_PROVOKE_IN_CREATION 0x8036
#define ID_PROVOKE_ON_WORKER 0x8037
#define ID_PROVOKE_EXCEPTION 0x8038
#define ID_PROVOKE_LAST 0x8038

#define ID_PANE_COUNTS 0x8100
#define ID_PANE_GENERAL 0x8300
#define ID_PANE_X 0x8301
#define ID_PANE_Y 0x8302
#define ID_PANE_Z 0x8303
#define ID_PANE_GRID 0x8304
/* The questions and complaints that the help knows. */
#define IDP_DELETE_ENTRIES 0x8380
#define IDP_SAVE_SCENE 0x8381
#define IDP_SCENE_NOT_OPENED 0x8382
#define IDP_SCENE_NOT_SAVED 0x8383
#define IDP_LIBRARY 0x8384
#define IDP_PROPERTY 0x8385
#define IDP_RECENT_FILE_GONE 0x8386

/* What is done to the scene: ID_SCENE_FIRST and the number of an editor::SceneCommand. */
#define ID_SCENE_FIRST 0x8200
#define ID_SCENE_NEW 0x8200
#define ID_SCENE_OPEN 0x8201
#define ID_SCENE_SAVE 0x8202
#define ID_SCENE_SAVE_AS 0x8203
#define ID_SCENE_ADD 0x8204
#define ID_SCENE_DELETE 0x8205
#define ID_SCENE_TO_FRONT 0x8206
#define ID_SCENE_TO_BACK 0x8207
#define ID_SCENE_SNAP 0x8208
#define ID_SCENE_HIDE 0x8209
#define ID_SCENE_SHOW_ALL 0x820A
#define ID_SCENE_DISABLE 0x820B
#define ID_SCENE_ENABLE_ALL 0x820C
#define ID_SCENE_NEXT 0x820D
#define ID_SCENE_PREVIOUS 0x820E
#define ID_SCENE_VIEW_ALL 0x820F
#define ID_SCENE_COLOR_OWN 0x8210
#define ID_SCENE_COLOR_1 0x8211
#define ID_SCENE_COLOR_2 0x8212
#define ID_SCENE_COLOR_3 0x8213
#define ID_SCENE_COLOR_4 0x8214
#define ID_SCENE_COLOR_5 0x8215
#define ID_SCENE_COLOR_6 0x8216
#define ID_SCENE_LAST 0x8216

/* What is done to entries, and to the library. */
#define ID_ENTRY_UNDO 0x8400
#define ID_ENTRY_DESCRIBE 0x8401
#define ID_ENTRY_COPY_TO 0x8402
#define ID_ENTRY_NEXT_PICTURE 0x8403
#define ID_ENTRY_PREVIOUS_PICTURE 0x8404
#define ID_ENTRY_MOVIE 0x8405
#define ID_LIBRARY_ADD 0x8406
#define ID_LIBRARY_PACK 0x8407
#define ID_LIBRARY_STOP 0x8408
#define ID_FILTER_SAVE 0x8409
#define ID_FILTER_REMOVE 0x840A

#define IDC_DIRECTORIES 1001
#define IDC_FILTER 1002
#define IDC_ENTRIES 1003
#define IDC_PREVIEW 1004
#define IDC_TREE_SPLITTER 1005
#define IDC_PREVIEW_SPLITTER 1006
#define IDC_SCENE 1007
#define IDC_PROPERTIES 1008
#define IDC_PROPERTIES_SPLITTER 1009
#define IDC_LIBRARY_SPLITTER 1010
/* In the status bar. */
#define IDC_STATUS_GENERAL 1101
#define IDC_STATUS_X 1102
#define IDC_STATUS_Y 1103
#define IDC_STATUS_Z 1104
#define IDC_STATUS_GRID 1105
/* In the library. */
#define IDC_FILTER_CHOICE 1200
#define IDC_WORK_TEXT 1201
#define IDC_WORK_BAR 1202
/* The dialogs that ask for a text, of one line and of several, and what is in them. */
#define IDD_TEXT_LINE 1210
#define IDD_TEXT_LINES 1211
#define IDC_REQUEST_PROMPT 1212
#define IDC_REQUEST_TEXT 1213
/* The menu of an entry. */
#define IDR_ENTRY_MENU 1214
/* In the window that plays a movie. */
#define IDC_MOVIE_PREVIOUS 1220
#define IDC_MOVIE_PLAY 1221
#define IDC_MOVIE_NEXT 1222
#define IDC_MOVIE_SLIDER 1223
#define IDC_MOVIE_TEXT 1224
/* In the pane of the properties: those that are typed, in the order of editor::Property, then the
   others. */
#define IDC_PROPERTY_FIRST 1020
#define IDC_PROPERTY_NAME 1020
#define IDC_PROPERTY_X 1021
#define IDC_PROPERTY_Y 1022
#define IDC_PROPERTY_TURN 1023
#define IDC_PROPERTY_SCALE 1024
#define IDC_PROPERTY_CLASS 1025
#define IDC_PROPERTY_COLOR 1026
#define IDC_PROPERTY_TRIANGLES 1027
#define IDC_PROPERTY_STATE 1028

#endif
