#pragma once

// Templates and menus for window tests: data/windows.rc, parsed once.

#include "framework/resources/resource_model.h"

namespace tessaly::testdata {

// Template ids.
constexpr int kAllControls = 10008;
constexpr int kSmallBox = 12044;
constexpr int kPageOne = 10012;
constexpr int kPageTwo = 10009;
constexpr int kTwentyControls = 10900;

// Menu ids.
constexpr int kFolderMenu = 10005;
constexpr int kBarMenu = 10012;
constexpr int kPageMenu = 12048;

// Control ids of kAllControls.
enum : int {
    idList = 10032,
    idFolderLabel = 10015,
    idPlainLabel = 12066,
    idHiddenLabel = 10067,
    idSend = 10054,
    idOwnerDrawn = 10006,
    idAutoCheck = 10053,
    idManualCheck = 10055,
    idRadioA1 = 12045,
    idRadioA2 = 12046,
    idRadioB1 = 12048,
    idRadioB2 = 12049,
    idToEdit = 10010,
    idTextEdit = 10058,
    idReadOnlyEdit = 10090,
    idDigitsEdit = 12055,
    idTemplates = 10075,
    idSortedCombo = 10083,
    idChannels = 12050,
    idLanguages = 12051,
    idProgress = 12008,
    idBuddy = 10091,
    idSpin = 10092,
    idDate = 10093,
    idTime = 10094,
    idGroup = 10095,
    idDisabledButton = 10096,
    idUnknownClass = 10097,
};

// Menu command ids.
enum : int {
    cmdInbox = 10260,
    cmdOutbox = 10261,
    cmdCellBroadcast = 12037,
    cmdNew = 10237,
    cmdInfo = 10273,
    cmdOptions = 10274,
    cmdAdd = 12041,
    cmdDelete = 12040,
};

// The parsed script: every control kind in one full-screen template, a small pop-up, two
// pages, a template of twenty controls, and the menus above.
const ResourceScript& windowScript();

} // namespace tessaly::testdata
