#pragma once

namespace pavane
{

// Identifiers of the texts that axes show. Hosts refer to them by number, so they stay.
inline constexpr int IDS_LEVELS = 10002;
inline constexpr int IDS_DECLINATION = 10003;
inline constexpr int IDS_RIGHT_ASCENSION = 10004;
inline constexpr int IDS_PREFIX_FIRST = 10010;  ///< 10^-30; one for each power of a thousand
inline constexpr int IDS_PREFIX_NONE = 10020;
inline constexpr int IDS_PREFIX_LAST = 10030;  ///< 10^30
inline constexpr int IDS_HOURS = 10040;

// Cursors.
inline constexpr unsigned IDC_SELECTION_DRAG = 10000;  ///< while an edge is dragged
inline constexpr unsigned IDC_SELECTION_IDLE = 10001;  ///< where a rectangle can be drawn
inline constexpr unsigned IDC_LINK = 10002;            ///< over what a press opens

// Menus; the first popup of each is a context menu.
inline constexpr unsigned IDR_AXIS_MENU = 10004;
inline constexpr unsigned IDR_PLOT_MENU = 10005;
inline constexpr unsigned IDR_TABLE_MENU = 10006;
inline constexpr unsigned IDR_MARK_MENU = 10007;
inline constexpr unsigned IDR_FREQ_GROUP_MENU = 10008;
inline constexpr unsigned IDR_FREQ_INFO_MENU = 10009;
inline constexpr unsigned IDR_COMPONENTS_MENU = 10010;
inline constexpr unsigned IDR_COPY_MENU = 10011;

// Dialogs.
inline constexpr unsigned IDD_AREA_SELECT = 10020;
inline constexpr unsigned IDC_AREA_WINDOW = 10021;  ///< placeholder of the window with the axis
inline constexpr unsigned IDD_TABLE_FIND = 10022;
inline constexpr unsigned IDC_TABLE_FIND_TEXT = 10023;
inline constexpr unsigned IDC_TABLE_FIND_CASE = 10024;
inline constexpr unsigned IDC_TABLE_FIND_WHOLE = 10025;
inline constexpr unsigned IDC_TABLE_FIND_COLUMN = 10026;
inline constexpr unsigned IDC_TABLE_FIND_BACK = 10027;
inline constexpr unsigned IDD_TABLE_NUMBER = 10030;
inline constexpr unsigned IDC_TABLE_NUMBER_LABEL = 10031;
inline constexpr unsigned IDC_TABLE_NUMBER = 10032;
inline constexpr unsigned IDD_FREQ_STEP = 10040;
inline constexpr unsigned IDC_FREQ_STEP = 10041;  ///< spin control: IFs in a group

// The page of time intervals: its two templates, its caption, its controls, which are numbered from
// 10001 in both, and the dialog that asks for a count of intervals.
inline constexpr unsigned IDD_TIME_INTERVALS = 10050;
inline constexpr unsigned IDD_TIME_INTERVALS_NARROW = 10051;
inline constexpr unsigned IDD_TIME_INTERVAL_COUNT = 10052;
inline constexpr unsigned IDS_TIME_INTERVALS = 10053;
inline constexpr unsigned IDC_TIME_START = 10001;
inline constexpr unsigned IDC_TIME_STOP = 10002;
inline constexpr unsigned IDC_TIME_INTERVAL = 10003;
inline constexpr unsigned IDC_TIME_INFO_START = 10004;
inline constexpr unsigned IDC_TIME_INFO_STOP = 10005;
inline constexpr unsigned IDC_TIME_INFO_INTERVAL = 10006;
inline constexpr unsigned IDC_TIME_CLOCK = 10007;    ///< radio button: clock text
inline constexpr unsigned IDC_TIME_SECONDS = 10008;  ///< radio button: seconds
inline constexpr unsigned IDC_TIME_EVERY_POINT = 10009;
inline constexpr unsigned IDC_TIME_SET_INTERVALS = 10010;
inline constexpr unsigned IDC_TIME_DEFAULT = 10011;
inline constexpr unsigned IDC_TIME_COUNT_TEXT = 10012;  ///< how many intervals the choice gives
inline constexpr unsigned IDC_TIME_COUNT = 1019;
inline constexpr unsigned IDC_TIME_COUNT_ARROWS = 1020;
inline constexpr unsigned IDC_TIME_COUNT_NOTE = 1021;  ///< how long the intervals would be

// Commands that every drawing window answers; menus of heirs share them.
inline constexpr unsigned ID_COPY_TO_CLIPBOARD = 10104;
inline constexpr unsigned ID_COPY_TO_BMP = 10105;

// Commands of tables.
inline constexpr unsigned ID_TABLE_COPY_ALL = 10201;
inline constexpr unsigned ID_TABLE_COPY_SELECTION = 10202;
inline constexpr unsigned ID_TABLE_SAVE_ALL = 10203;
inline constexpr unsigned ID_TABLE_SAVE_SELECTION = 10204;
inline constexpr unsigned ID_TABLE_UNDO = 10205;
inline constexpr unsigned ID_TABLE_REDO = 10206;
inline constexpr unsigned ID_TABLE_EDIT = 10207;
inline constexpr unsigned ID_TABLE_CLEAR = 10208;
inline constexpr unsigned ID_TABLE_COPY_CELLS = 10209;
inline constexpr unsigned ID_TABLE_PASTE = 10210;
inline constexpr unsigned ID_TABLE_SELECT_ALL = 10211;
inline constexpr unsigned ID_TABLE_SELECT_ROWS = 10212;
inline constexpr unsigned ID_TABLE_SELECT_COLUMNS = 10213;
inline constexpr unsigned ID_TABLE_FIND = 10214;
inline constexpr unsigned ID_TABLE_FIND_NEXT = 10215;
inline constexpr unsigned ID_TABLE_FIND_PREVIOUS = 10216;
inline constexpr unsigned ID_TABLE_GO_TO_ROW = 10217;
inline constexpr unsigned ID_TABLE_SORT_UP = 10218;
inline constexpr unsigned ID_TABLE_SORT_DOWN = 10219;
inline constexpr unsigned ID_TABLE_SORT_STORED = 10220;
inline constexpr unsigned ID_TABLE_FIT_COLUMN = 10221;
inline constexpr unsigned ID_TABLE_COLUMN_WIDTH = 10222;

// Commands of tables with marks.
inline constexpr unsigned ID_MARK_SELECTED = 10231;  ///< marks the items of the selected cells
inline constexpr unsigned ID_MARK_ALL = 10232;
inline constexpr unsigned ID_MARK_NONE = 10233;
inline constexpr unsigned ID_MARK_INVERT = 10234;

// Commands of tables that are filled while their window lives.
inline constexpr unsigned ID_FILLING_STOP = 10241;
inline constexpr unsigned ID_FILLING_GO_ON = 10242;

// Commands of frequency groups.
inline constexpr unsigned ID_FREQ_ADD_GROUP = 10251;  ///< of the marked IFs
inline constexpr unsigned ID_FREQ_DELETE_GROUP = 10252;
inline constexpr unsigned ID_FREQ_DELETE_ALL = 10253;
inline constexpr unsigned ID_FREQ_ALL_IN_ONE = 10254;
inline constexpr unsigned ID_FREQ_FIXED_STEP = 10255;

// Commands of the table of components.
inline constexpr unsigned ID_COMPONENT_ADD = 10261;
inline constexpr unsigned ID_COMPONENT_COPY = 10262;
inline constexpr unsigned ID_COMPONENT_DELETE = 10263;

// Commands of areas beside the tools.
inline constexpr unsigned ID_NEVER_CLEAN = 10271;   ///< of the selected areas
inline constexpr unsigned ID_CONTOUR_AREA = 10272;  ///< the tool that takes a contour
inline constexpr unsigned ID_CONTOUR_LEVEL = 10273;
inline constexpr unsigned ID_GROW_AREAS = 10274;
inline constexpr unsigned ID_SHRINK_AREAS = 10275;

// Commands of the tools. Hosts and toolbars refer to them by number, so they stay.
inline constexpr unsigned ID_TRACK_ARROW = 32771;
inline constexpr unsigned ID_TRACK_RECT = 32772;
inline constexpr unsigned ID_TRACK_ROTATE_RECT = 32773;
inline constexpr unsigned ID_TRACK_AREA = 32774;
inline constexpr unsigned ID_ZOOM_PLUS = 32775;
inline constexpr unsigned ID_ZOOM_MINUS = 32776;  ///< zoom back
inline constexpr unsigned ID_TRACK_ELLIPSE = 32777;
inline constexpr unsigned ID_TRACK_DELETE =
    32780;                                    ///< with ID_TRACK_COPY: acts on the current area
inline constexpr unsigned ID_ZOOM_1 = 32781;  ///< to ID_ZOOM_1 + 4: the five zoom factors
inline constexpr unsigned ID_ZOOM_5 = 32785;
inline constexpr unsigned ID_CHANGE_AREA = 32786;  ///< the list of areas
inline constexpr unsigned ID_TRACK_COPY = 32788;
inline constexpr unsigned ID_TRACK_UNDO = 32789;
inline constexpr unsigned ID_TRACK_REDO = 32790;
inline constexpr unsigned ID_SHOW_CELLS = 32791;
inline constexpr unsigned ID_WHOLE_MAP = 32792;
inline constexpr unsigned ID_VERTEX_INSERT = 32793;
inline constexpr unsigned ID_VERTEX_DELETE = 32794;
inline constexpr unsigned ID_SELECT_ALL = 32795;
inline constexpr unsigned ID_CLEAR_AREAS = 32796;
inline constexpr unsigned ID_CLOSE_AREA = 32797;
inline constexpr unsigned ID_VERTEX_TABLE = 32798;

}  // namespace pavane
