// What the user can order in the window for people, by the numbers that its menus, keys and buttons
// carry. The resource script reads this file, too.
#pragma once

// NOLINTBEGIN(*-macro-*): the resource compiler knows no constants
#define ID_WINDOW_MENU 1
#define ID_WINDOW_KEYS 1

#define ID_NEW 101
#define ID_OPEN 102
#define ID_SAVE 103
#define ID_SAVE_AS 104
#define ID_EXIT 105
#define ID_ACTIVATE 111
#define ID_DEACTIVATE 112
#define ID_DOUBLE_SIZE 113
#define ID_CRC 114
#define ID_SHOW_COUNTS 121
#define ID_SELECT_CALLS 122
#define ID_CLEAR_CALLS 123
#define ID_HELP 131

// Parts of the window: the first of the seven values, of their names, of their types.
#define ID_VALUES 201
#define ID_NAMES 211
#define ID_TYPES 221
#define ID_CALLS 231
#define ID_STATUS 232
// NOLINTEND(*-macro-*)
