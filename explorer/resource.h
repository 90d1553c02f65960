#pragma once

// Commands of the host's own, which its built-in controls stand for.
#define IDM_EXIT 101
#define IDM_COPY 102
#define IDM_SELECT_ALL 103
#define IDM_REFRESH 104
#define IDM_NEXT_MESSAGE 105
#define IDM_PREVIOUS_MESSAGE 106
#define IDM_ADD_INS 107
#define IDM_READ 108
#define IDM_ABOUT 109

// Children of the window.
#define IDC_FOLDERS 201
#define IDC_MESSAGES 202
#define IDC_READING 203
#define IDC_STATUS 204
#define IDC_TOOL_BAR 205
#define IDC_NOTICE 206

#define IDD_ADD_INS 301
#define IDC_ADD_IN_LIST 302
#define IDC_LOAD 303
#define IDC_UNLOAD 304
#define IDC_RESULT 305
