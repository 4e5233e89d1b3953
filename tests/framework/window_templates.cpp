#include "tests/framework/window_templates.h"

namespace tessaly::testdata {

namespace {

ControlTemplate control(const char* statement, const char* className, const char* text, int id,
                        int x, int y, int width, int height, QStringList styles = {}) {
    ControlTemplate result;
    result.statement = QString::fromLatin1(statement);
    result.className = QString::fromLatin1(className);
    result.text = QString::fromUtf8(text);
    result.id = id;
    result.x = x;
    result.y = y;
    result.width = width;
    result.height = height;
    result.styles = std::move(styles);
    return result;
}

DialogTemplate allControls() {
    DialogTemplate t;
    t.id = kAllControls;
    t.caption = QStringLiteral("SMS");
    t.width = 145;
    t.height = 156;
    t.styles = {QStringLiteral("WS_POPUP"), QStringLiteral("WS_CAPTION")};
    t.controls = {
        control("CONTROL", "SysListView32", "", idList, 0, 12, 145, 60,
                {"LVS_REPORT", "LVS_SINGLESEL", "LVS_SHOWSELALWAYS", "WS_TABSTOP"}),
        control("LTEXT", "", "Inbox", idFolderLabel, 0, 0, 40, 10, {"SS_NOTIFY"}),
        control("LTEXT", "", "<ticker>", idPlainLabel, 0, 146, 145, 10),
        control("LTEXT", "", "Note:", idHiddenLabel, 50, 0, 30, 10, {"NOT WS_VISIBLE"}),
        control("PUSHBUTTON", "", "SEND", idSend, 0, 74, 18, 17),
        control("CONTROL", "Button", "RECP", idOwnerDrawn, 131, 74, 12, 11, {"BS_OWNERDRAW"}),
        control("AUTOCHECKBOX", "", "Use same SCA for reply", idAutoCheck, 20, 74, 90, 9),
        control("CONTROL", "Button", "Manual", idManualCheck, 20, 84, 50, 9, {"BS_CHECKBOX"}),
        control("CONTROL", "Button", "horizontally", idRadioA1, 0, 94, 50, 9,
                {"BS_AUTORADIOBUTTON", "WS_GROUP"}),
        control("CONTROL", "Button", "vertically", idRadioA2, 50, 94, 50, 9,
                {"BS_AUTORADIOBUTTON"}),
        control("CONTROL", "Button", "changed messages", idRadioB1, 0, 104, 50, 9,
                {"BS_AUTORADIOBUTTON", "WS_GROUP"}),
        control("CONTROL", "Button", "every message", idRadioB2, 50, 104, 50, 9,
                {"BS_AUTORADIOBUTTON"}),
        control("EDITTEXT", "", "", idToEdit, 37, 2, 90, 12, {"ES_AUTOHSCROLL"}),
        control("EDITTEXT", "", "", idTextEdit, 0, 114, 70, 30,
                {"ES_MULTILINE", "ES_AUTOVSCROLL", "ES_WANTRETURN"}),
        control("EDITTEXT", "", "fixed", idReadOnlyEdit, 72, 114, 30, 12, {"ES_READONLY"}),
        control("EDITTEXT", "", "", idDigitsEdit, 104, 114, 40, 12, {"ES_NUMBER"}),
        control("COMBOBOX", "", "", idTemplates, 37, 15, 90, 75,
                {"CBS_DROPDOWNLIST", "WS_VSCROLL"}),
        control("COMBOBOX", "", "", idSortedCombo, 37, 36, 90, 45,
                {"CBS_DROPDOWNLIST", "CBS_SORT"}),
        control("LISTBOX", "", "", idChannels, 0, 128, 40, 16, {"LBS_SORT", "LBS_NOTIFY"}),
        control("LISTBOX", "", "", idLanguages, 42, 128, 40, 16,
                {"LBS_SORT", "LBS_MULTIPLESEL", "LBS_NOTIFY"}),
        control("CONTROL", "msctls_progress32", "", idProgress, 84, 128, 60, 8, {"PBS_SMOOTH"}),
        control("EDITTEXT", "", "", idBuddy, 84, 137, 30, 9, {"ES_NUMBER"}),
        control("CONTROL", "msctls_updown32", "", idSpin, 114, 137, 10, 9,
                {"UDS_SETBUDDYINT", "UDS_AUTOBUDDY", "UDS_ALIGNRIGHT", "UDS_ARROWKEYS"}),
        control("CONTROL", "SysDateTimePick32", "", idDate, 0, 137, 40, 9, {"DTS_SHORTDATEFORMAT"}),
        control("CONTROL", "SysDateTimePick32", "", idTime, 42, 137, 40, 9,
                {"DTS_TIMEFORMAT", "DTS_UPDOWN"}),
        control("GROUPBOX", "", "Ticker", idGroup, 0, 92, 145, 22),
        control("PUSHBUTTON", "", "Off", idDisabledButton, 110, 74, 20, 9, {"WS_DISABLED"}),
        control("CONTROL", "NoSuchClass", "", idUnknownClass, 0, 0, 1, 1),
    };
    return t;
}

DialogTemplate smallBox() {
    DialogTemplate t;
    t.id = kSmallBox;
    t.caption = QStringLiteral("Cell Broadcast");
    t.width = 120;
    t.height = 50;
    t.controls = {
        control("LTEXT", "", "Channel:", 12054, 4, 8, 40, 10),
        control("EDITTEXT", "", "", 12055, 48, 6, 60, 12, {"ES_NUMBER"}),
        control("DEFPUSHBUTTON", "", "OK", 1, 20, 30, 40, 14),
        control("PUSHBUTTON", "", "Cancel", 2, 64, 30, 40, 14),
    };
    return t;
}

DialogTemplate page(int id, const char* caption, int editId) {
    DialogTemplate t;
    t.id = id;
    t.caption = QString::fromLatin1(caption);
    t.width = 145;
    t.height = 130;
    t.styles = {QStringLiteral("WS_CHILD"), QStringLiteral("DS_CONTROL")};
    t.controls = {
        control("LTEXT", "", "Name:", editId + 1, 4, 8, 40, 10),
        control("EDITTEXT", "", "", editId, 48, 6, 90, 12),
    };
    return t;
}

DialogTemplate twentyControls() {
    DialogTemplate t;
    t.id = kTwentyControls;
    t.caption = QStringLiteral("Twenty");
    t.width = 145;
    t.height = 156;
    const char* kinds[][3] = {
        {"LTEXT", "", "Label"},
        {"EDITTEXT", "", ""},
        {"PUSHBUTTON", "", "Push"},
        {"AUTOCHECKBOX", "", "Check"},
        {"COMBOBOX", "", ""},
        {"LISTBOX", "", ""},
        {"CONTROL", "SysListView32", ""},
        {"CONTROL", "msctls_progress32", ""},
        {"AUTORADIOBUTTON", "", "Radio"},
        {"CONTROL", "SysDateTimePick32", ""},
    };
    for (int i = 0; i < 20; ++i) {
        const auto& kind = kinds[i % 10];
        t.controls.push_back(
            control(kind[0], kind[1], kind[2], 11000 + i, (i % 2) * 72, (i / 2) * 15, 70, 13));
    }
    return t;
}

MenuItem command(int id, const char* text) {
    MenuItem item;
    item.id = id;
    item.text = QString::fromUtf8(text);
    return item;
}

MenuItem popup(const char* text, std::vector<MenuItem> children) {
    MenuItem item;
    item.text = QString::fromUtf8(text);
    item.isPopup = true;
    item.children = std::move(children);
    return item;
}

MenuItem separator() {
    MenuItem item;
    item.separator = true;
    return item;
}

ResourceScript buildScript() {
    ResourceScript script;
    for (const DialogTemplate& t : {allControls(), smallBox(), page(kPageOne, "Signature", 10100),
                                    page(kPageTwo, "Sending", 10200), twentyControls()})
        script.dialogs[t.id] = t;
    MenuItem disabledDelete = command(cmdDelete, "Delete");
    disabledDelete.enabled = false;
    script.menus[kFolderMenu] =
        MenuTemplate{kFolderMenu,
                     {popup("Show", {command(cmdInbox, "Inbox"), command(cmdOutbox, "Outbox"),
                                     separator(), command(cmdCellBroadcast, "Cellbroadcast")})}};
    script.menus[kBarMenu] =
        MenuTemplate{kBarMenu,
                     {command(cmdNew, "New"),
                      popup("Tools", {command(cmdInfo, "Info"), command(cmdOptions, "Options")})}};
    script.menus[kPageMenu] =
        MenuTemplate{kPageMenu, {popup("Channel", {command(cmdAdd, "Add"), disabledDelete})}};
    script.strings[57344] = QStringLiteral("SMS");
    return script;
}

} // namespace

const ResourceScript& windowScript() {
    static const ResourceScript script = buildScript();
    return script;
}

} // namespace tessaly::testdata
