#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/controls.h"
#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The print dialog. Hosts may show a template of their own with these identifiers.
inline constexpr unsigned IDD_PRINT = 10001;
inline constexpr unsigned IDC_PRINT_PROPERTIES = 1025;
inline constexpr unsigned IDC_PRINT_TO_FILE = 1040;
inline constexpr unsigned IDC_PRINT_COLLATE = 1041;
inline constexpr unsigned IDC_PRINT_ALL = 1056;
inline constexpr unsigned IDC_PRINT_SELECTION = 1057;
inline constexpr unsigned IDC_PRINT_PAGES = 1058;
inline constexpr unsigned IDC_PRINT_FROM_LABEL = 1089;
inline constexpr unsigned IDC_PRINT_TO_LABEL = 1090;
inline constexpr unsigned IDC_PRINT_TYPE = 1098;
inline constexpr unsigned IDC_PRINT_STATUS = 1099;
inline constexpr unsigned IDC_PRINT_COMMENT = 1100;
inline constexpr unsigned IDC_PRINT_WHERE = 1101;
inline constexpr unsigned IDC_PRINT_NAME = 1139;
inline constexpr unsigned IDC_PRINT_FROM = 1152;
inline constexpr unsigned IDC_PRINT_TO = 1153;
inline constexpr unsigned IDC_PRINT_COPIES = 1154;
inline constexpr unsigned IDC_PRINT_SUBSCRIPT_ON = 1200;
inline constexpr unsigned IDC_PRINT_NUMBER_ON = 1201;
inline constexpr unsigned IDC_PRINT_SUBSCRIPT = 1202;
inline constexpr unsigned IDC_PRINT_NUMBER = 1203;
inline constexpr unsigned IDC_PRINT_PAGE_SETUP = 1204;
inline constexpr unsigned IDC_PRINT_PREVIEW = 1205;
inline constexpr unsigned ID_PRINT_COUNT_AGAIN = 2000;  ///< counts the pages again

inline constexpr DlgItem printItems[] = {
    {ControlKind::groupBox, 1075, "Printer", 8, 4, 272, 86},
    {ControlKind::staticText, 1093, "&Name:", 16, 20, 36, 10},
    {ControlKind::comboBox, IDC_PRINT_NAME, "", 54, 18, 150, 120, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRINT_PROPERTIES, "&Properties", 212, 17, 60, 14, WS_TABSTOP},
    {ControlKind::staticText, 1095, "Status:", 16, 36, 36, 10},
    {ControlKind::staticText, IDC_PRINT_STATUS, "", 54, 36, 150, 10, SS_ENDELLIPSIS},
    {ControlKind::staticText, 1094, "Type:", 16, 48, 36, 10},
    {ControlKind::staticText, IDC_PRINT_TYPE, "", 54, 48, 150, 10, SS_ENDELLIPSIS},
    {ControlKind::staticText, 1097, "Where:", 16, 60, 36, 10},
    {ControlKind::staticText, IDC_PRINT_WHERE, "", 54, 60, 150, 10, SS_ENDELLIPSIS},
    {ControlKind::staticText, 1096, "Comments:", 16, 72, 38, 10},
    {ControlKind::staticText, IDC_PRINT_COMMENT, "", 54, 72, 150, 10, SS_ENDELLIPSIS},
    {ControlKind::checkBox, IDC_PRINT_TO_FILE, "Print to fi&le", 212, 72, 64, 11, WS_TABSTOP},
    {ControlKind::groupBox, 1072, "Print range", 8, 94, 146, 64},
    {ControlKind::radioButton, IDC_PRINT_ALL, "&All", 16, 107, 130, 11, WS_TABSTOP | WS_GROUP},
    {ControlKind::radioButton, IDC_PRINT_PAGES, "Pa&ges", 16, 123, 38, 11, WS_TABSTOP},
    {ControlKind::radioButton, IDC_PRINT_SELECTION, "&Selection", 16, 139, 130, 11, WS_TABSTOP},
    {ControlKind::staticText, IDC_PRINT_FROM_LABEL, "&from:", 56, 124, 20, 10, SS_RIGHT | WS_GROUP},
    {ControlKind::edit, IDC_PRINT_FROM, "", 78, 122, 28, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_PRINT_TO_LABEL, "&to:", 106, 124, 12, 10, SS_RIGHT},
    {ControlKind::edit, IDC_PRINT_TO, "", 120, 122, 28, 13, WS_TABSTOP},
    {ControlKind::groupBox, 1073, "Copies", 160, 94, 120, 64},
    {ControlKind::staticText, 1092, "Number of &copies:", 168, 109, 66, 10},
    {ControlKind::spin, IDC_PRINT_COPIES, "", 236, 107, 38, 13, WS_TABSTOP},
    {ControlKind::checkBox, IDC_PRINT_COLLATE, "C&ollate", 236, 139, 40, 11, WS_TABSTOP},
    {ControlKind::checkBox, IDC_PRINT_SUBSCRIPT_ON, "", 8, 165, 10, 11, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRINT_SUBSCRIPT, "Subscript...", 20, 163, 64, 14, WS_TABSTOP},
    {ControlKind::checkBox, IDC_PRINT_NUMBER_ON, "", 92, 165, 10, 11, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRINT_NUMBER, "Page number...", 104, 163, 64, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRINT_PAGE_SETUP, "Page setup...", 20, 184, 64, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PRINT_PREVIEW, "Preview...", 104, 184, 64, 14, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 176, 184, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 230, 184, 50, 14, WS_TABSTOP},
};
inline constexpr ResizeItem printResize[] = {
    {1075, 0, 0, 100, 0},
    {IDC_PRINT_NAME, 0, 0, 100, 0},
    {IDC_PRINT_PROPERTIES, 100, 0, 100, 0},
    {IDC_PRINT_STATUS, 0, 0, 100, 0},
    {IDC_PRINT_TYPE, 0, 0, 100, 0},
    {IDC_PRINT_WHERE, 0, 0, 100, 0},
    {IDC_PRINT_COMMENT, 0, 0, 100, 0},
    {IDC_PRINT_TO_FILE, 100, 0, 100, 0},
    {1073, 0, 0, 100, 0},
    {IDOK, 100, 0, 100, 0},
    {IDCANCEL, 100, 0, 100, 0},
};
inline constexpr DlgTemplate printTemplate = {IDD_PRINT, "Print",    288,
                                              204,       printItems, std::size(printItems)};

// The box of a running job.
inline constexpr unsigned IDC_PRINTING_TITLE = 201;
inline constexpr unsigned IDC_PRINTING_PRINTER = 202;
inline constexpr unsigned IDC_PRINTING_PORT = 203;
inline constexpr unsigned IDC_PRINTING_PAGE = 204;
inline constexpr unsigned IDC_PRINTING_HEAD = 205;
inline constexpr unsigned IDC_PRINTING_ON = 206;

inline constexpr DlgItem printingItems[] = {
    {ControlKind::staticText, IDC_PRINTING_HEAD, "Printing", 8, 8, 164, 10, SS_CENTER},
    {ControlKind::staticText, IDC_PRINTING_TITLE, "", 8, 20, 164, 10, SS_CENTER | SS_ENDELLIPSIS},
    {ControlKind::staticText, IDC_PRINTING_ON, "on the", 8, 32, 164, 10, SS_CENTER},
    {ControlKind::staticText, IDC_PRINTING_PRINTER, "", 8, 44, 164, 10, SS_CENTER | SS_ENDELLIPSIS},
    {ControlKind::staticText, IDC_PRINTING_PORT, "", 8, 56, 164, 10, SS_CENTER | SS_ENDELLIPSIS},
    {ControlKind::staticText, IDC_PRINTING_PAGE, "", 8, 70, 164, 10, SS_CENTER},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 62, 86, 56, 14, WS_TABSTOP},
};
inline constexpr ResizeItem printingResize[] = {
    {IDC_PRINTING_HEAD, 0, 0, 100, 0}, {IDC_PRINTING_TITLE, 0, 0, 100, 0},
    {IDC_PRINTING_ON, 0, 0, 100, 0},   {IDC_PRINTING_PRINTER, 0, 0, 100, 0},
    {IDC_PRINTING_PORT, 0, 0, 100, 0}, {IDC_PRINTING_PAGE, 0, 0, 100, 0},
    {IDCANCEL, 50, 0, 50, 0},
};
inline constexpr DlgTemplate printingTemplate = {0,   "Printing",    180,
                                                 106, printingItems, std::size(printingItems)};

// Caption and first number.
inline constexpr unsigned IDD_PRINT_SUBSCRIPT = 10003;
inline constexpr unsigned IDD_PRINT_NUMBER = 10004;
inline constexpr unsigned IDC_PRINT_EDIT = 1019;
inline constexpr unsigned IDC_PRINT_ARROWS = 1020;

inline constexpr DlgItem subscriptItems[] = {
    {ControlKind::edit, IDC_PRINT_EDIT, "", 8, 8, 244, 13, WS_TABSTOP | ES_NOLIMIT},
    {ControlKind::defaultButton, IDOK, "OK", 148, 30, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 202, 30, 50, 14, WS_TABSTOP},
};
inline constexpr ResizeItem subscriptResize[] = {
    {IDC_PRINT_EDIT, 0, 0, 100, 0},
    {IDOK, 100, 0, 100, 0},
    {IDCANCEL, 100, 0, 100, 0},
};
inline constexpr DlgTemplate subscriptTemplate = {
    IDD_PRINT_SUBSCRIPT, "Subscript", 260, 52, subscriptItems, std::size(subscriptItems)};

inline constexpr DlgItem numberItems[] = {
    {ControlKind::staticText, 0, "&First page number:", 8, 11, 74, 10},
    {ControlKind::edit, IDC_PRINT_EDIT, "", 84, 8, 44, 13, WS_TABSTOP},
    {ControlKind::upDown, IDC_PRINT_ARROWS, "", 128, 8, 10, 13},
    {ControlKind::defaultButton, IDOK, "OK", 34, 32, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 88, 32, 50, 14, WS_TABSTOP},
};
inline constexpr DlgTemplate numberTemplate = {IDD_PRINT_NUMBER, "Page number",         146, 54,
                                               numberItems,      std::size(numberItems)};

// What a printer does beside the pages.
inline constexpr unsigned IDC_PROPERTY_SIDES = 1141;
inline constexpr unsigned IDC_PROPERTY_COLOR = 1142;
inline constexpr unsigned IDC_PROPERTY_DPI = 1143;

inline constexpr DlgItem propertyItems[] = {
    {ControlKind::staticText, 0, "&Sides:", 8, 11, 50, 10},
    {ControlKind::comboBox, IDC_PROPERTY_SIDES, "", 60, 8, 120, 80, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Colours:", 8, 29, 50, 10},
    {ControlKind::comboBox, IDC_PROPERTY_COLOR, "", 60, 26, 120, 80, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Resolution:", 8, 47, 50, 10},
    {ControlKind::comboBox, IDC_PROPERTY_DPI, "", 60, 44, 120, 80, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 76, 68, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 130, 68, 50, 14, WS_TABSTOP},
};
inline constexpr ResizeItem propertiesResize[] = {
    {IDC_PROPERTY_SIDES, 0, 0, 100, 0}, {IDC_PROPERTY_COLOR, 0, 0, 100, 0},
    {IDC_PROPERTY_DPI, 0, 0, 100, 0},   {IDOK, 100, 0, 100, 0},
    {IDCANCEL, 100, 0, 100, 0},
};
inline constexpr DlgTemplate propertiesTemplate = {0,  "Properties",  188,
                                                   90, propertyItems, std::size(propertyItems)};

// Paper and margins.
inline constexpr unsigned IDC_SETUP_PRINTER = 1026;
inline constexpr unsigned IDC_SETUP_PORTRAIT = 1056;
inline constexpr unsigned IDC_SETUP_LANDSCAPE = 1057;
inline constexpr unsigned IDC_SETUP_SHEET = 1080;  ///< place of the picture of the sheet
inline constexpr unsigned IDC_SETUP_PAPER = 1137;
inline constexpr unsigned IDC_SETUP_LEFT = 1155;  ///< the four margins follow one another
inline constexpr unsigned IDC_SETUP_TOP = 1156;
inline constexpr unsigned IDC_SETUP_RIGHT = 1157;
inline constexpr unsigned IDC_SETUP_BOTTOM = 1158;
inline constexpr unsigned IDC_SETUP_WIDTH = 1159;
inline constexpr unsigned IDC_SETUP_HEIGHT = 1160;
inline constexpr unsigned IDC_SETUP_LABELS = 1170;  ///< the texts before the edits, in their order

inline constexpr DlgItem pageSetupItems[] = {
    {ControlKind::placeholder, IDC_SETUP_SHEET, "", 8, 8, 226, 126},
    {ControlKind::groupBox, 1072, "Paper", 8, 138, 226, 46},
    {ControlKind::staticText, IDC_SETUP_LABELS + 0, "Si&ze:", 16, 152, 30, 10},
    {ControlKind::comboBox, IDC_SETUP_PAPER, "", 48, 149, 178, 100, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETUP_LABELS + 1, "&Width:", 48, 168, 26, 10},
    {ControlKind::edit, IDC_SETUP_WIDTH, "", 76, 166, 40, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETUP_LABELS + 2, "&Height:", 124, 168, 28, 10},
    {ControlKind::edit, IDC_SETUP_HEIGHT, "", 154, 166, 40, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETUP_LABELS + 3, "mm", 198, 168, 20, 10},
    {ControlKind::groupBox, 1073, "Orientation", 8, 188, 70, 46},
    {ControlKind::radioButton, IDC_SETUP_PORTRAIT, "P&ortrait", 16, 201, 58, 11,
     WS_TABSTOP | WS_GROUP},
    {ControlKind::radioButton, IDC_SETUP_LANDSCAPE, "L&andscape", 16, 216, 58, 11, WS_TABSTOP},
    {ControlKind::groupBox, 1075, "Margins (millimetres)", 84, 188, 150, 46},
    {ControlKind::staticText, IDC_SETUP_LABELS + 4, "&Left:", 90, 202, 24, 10, WS_GROUP},
    {ControlKind::edit, IDC_SETUP_LEFT, "", 116, 200, 40, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETUP_LABELS + 5, "&Right:", 162, 202, 28, 10},
    {ControlKind::edit, IDC_SETUP_RIGHT, "", 190, 200, 40, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETUP_LABELS + 6, "&Top:", 90, 218, 24, 10},
    {ControlKind::edit, IDC_SETUP_TOP, "", 116, 216, 40, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_SETUP_LABELS + 7, "&Bottom:", 162, 218, 28, 10},
    {ControlKind::edit, IDC_SETUP_BOTTOM, "", 190, 216, 40, 13, WS_TABSTOP},
    {ControlKind::pushButton, IDC_SETUP_PRINTER, "&Printer...", 8, 240, 60, 14, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 130, 240, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 184, 240, 50, 14, WS_TABSTOP},
};
inline constexpr ResizeItem pageSetupResize[] = {
    {IDC_SETUP_SHEET, 0, 0, 100, 100},
    // what stands below the sheet keeps to the lower edge
    {1072, 0, 100, 100, 100},
    {IDC_SETUP_PAPER, 0, 100, 100, 100},
    {1073, 0, 100, 0, 100},
    {1075, 0, 100, 100, 100},
    {IDC_SETUP_PORTRAIT, 0, 100, 0, 100},
    {IDC_SETUP_LANDSCAPE, 0, 100, 0, 100},
    {IDC_SETUP_WIDTH, 0, 100, 0, 100},
    {IDC_SETUP_HEIGHT, 0, 100, 0, 100},
    {IDC_SETUP_LEFT, 0, 100, 0, 100},
    {IDC_SETUP_TOP, 0, 100, 0, 100},
    {IDC_SETUP_RIGHT, 0, 100, 0, 100},
    {IDC_SETUP_BOTTOM, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 0, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 1, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 2, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 3, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 4, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 5, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 6, 0, 100, 0, 100},
    {IDC_SETUP_LABELS + 7, 0, 100, 0, 100},
    {IDC_SETUP_PRINTER, 0, 100, 0, 100},
    {IDOK, 100, 100, 100, 100},
    {IDCANCEL, 100, 100, 100, 100},
};
inline constexpr DlgTemplate pageSetupTemplate = {0,   "Page setup",   242,
                                                  262, pageSetupItems, std::size(pageSetupItems)};

// The preview; "Close" is IDOK.
inline constexpr unsigned IDD_PRINT_PREVIEW = 10002;
inline constexpr unsigned IDC_PREVIEW_PAGE_LABEL = 1003;
inline constexpr unsigned IDC_PREVIEW_PAGE = 1004;
inline constexpr unsigned IDC_PREVIEW_TOTAL_LABEL = 1005;
inline constexpr unsigned IDC_PREVIEW_TOTAL = 1006;
inline constexpr unsigned IDC_PREVIEW_WINDOW = 1007;
inline constexpr unsigned IDC_PREVIEW_STATUS = 1008;
inline constexpr unsigned IDC_PREVIEW_COPY = 1025;
inline constexpr unsigned IDC_PREVIEW_ZOOM_OUT = 1027;
inline constexpr unsigned IDC_PREVIEW_ZOOM_IN = 1028;
inline constexpr unsigned IDC_PREVIEW_WHOLE = 1029;
inline constexpr unsigned IDC_PREVIEW_WIDTH = 1030;

inline constexpr DlgItem previewItems[] = {
    {ControlKind::staticText, IDC_PREVIEW_PAGE_LABEL, "Current page:", 6, 9, 52, 10},
    {ControlKind::comboBox, IDC_PREVIEW_PAGE, "", 60, 6, 50, 120, WS_TABSTOP | CBS_DROPDOWN},
    {ControlKind::staticText, IDC_PREVIEW_TOTAL_LABEL, "Total pages:", 116, 9, 46, 10},
    {ControlKind::staticText, IDC_PREVIEW_TOTAL, "", 164, 9, 44, 10},
    {ControlKind::pushButton, IDC_PREVIEW_ZOOM_IN, "Zoom &In", 6, 24, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PREVIEW_ZOOM_OUT, "Zoom &Out", 60, 24, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PREVIEW_WHOLE, "Whole &page", 114, 24, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PREVIEW_WIDTH, "Page &width", 174, 24, 56, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_PREVIEW_COPY, "To ClipBoard", 234, 24, 60, 14, WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "Close", 404, 24, 50, 14, WS_TABSTOP},
    {ControlKind::placeholder, IDC_PREVIEW_WINDOW, "", 6, 44, 448, 340, WS_TABSTOP},
    {ControlKind::staticText, IDC_PREVIEW_STATUS, "", 6, 390, 448, 10, SS_ENDELLIPSIS},
};
inline constexpr ResizeItem previewResize[] = {
    {IDC_PREVIEW_WINDOW, 0, 0, 100, 100},
    {IDC_PREVIEW_STATUS, 0, 100, 100, 100},
    {IDOK, 100, 0, 100, 0},
};
inline constexpr DlgTemplate previewTemplate = {
    IDD_PRINT_PREVIEW, "Print preview",         460,          404,
    previewItems,      std::size(previewItems), WS_THICKFRAME};

}  // namespace pavane
