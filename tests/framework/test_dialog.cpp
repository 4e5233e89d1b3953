#include "framework/resources/resources.h"
#include "framework/ui/dialog.h"
#include "framework/ui/menu.h"
#include "framework/ui/screen.h"
#include "tests/framework/recording_dialog.h"
#include "tests/framework/window_templates.h"
#include "tests/testkit/window_test.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyle>
#include <QTest>

#include <gtest/gtest-spi.h>

using namespace tessaly;
using namespace tessaly::testdata;
using tessaly::testkit::ScriptedUser;

namespace {

class DialogTest : public testkit::WindowTest {
protected:
    // Presses the left button, holds it `ms` by the clock, and lets go.
    bool holdLeftButton(QWidget& widget, QPoint at, int ms = 600) {
        QTest::mousePress(&widget, Qt::LeftButton, {}, at);
        clock.advance(ms);
        QTest::mouseRelease(&widget, Qt::LeftButton, {}, at);
        return true;
    }
    static QPoint rowCentre(Dialog& window, int row) {
        ListView* list = window.listView(idList);
        return list->visualItemRect(list->item(row, 0)).center();
    }

    void SetUp() override {
        WindowTest::SetUp();
        setCurrentResources(&windowScript());
    }
    void TearDown() override {
        WindowTest::TearDown();
        setCurrentResources(nullptr);
    }

    // The all-controls window, created and shown.
    RecordingDialog& open() {
        window_ = std::make_unique<RecordingDialog>(kAllControls);
        EXPECT_TRUE(window_->create());
        window_->showWindow(SW_SHOW);
        window_->log.clear();
        return *window_;
    }

    std::unique_ptr<RecordingDialog> window_;
};

TEST(DialogUnits, MapOntoThePhoneScreen) {
    struct Case {
        int units;
        int pixelsX;
        int pixelsY;
    } const cases[] = {{0, 0, 0},    {1, 2, 2},       {10, 17, 17},
                       {12, 20, 21}, {145, 239, 249}, {156, 257, 268}};
    for (const Case& c : cases) {
        EXPECT_EQ(dialogUnitsToPixelsX(c.units), c.pixelsX) << c.units;
        EXPECT_EQ(dialogUnitsToPixelsY(c.units), c.pixelsY) << c.units;
    }
    // Neighbours share an edge: no gap, no overlap.
    const QRect left = dialogUnitsToPixels(0, 0, 57, 9);
    const QRect right = dialogUnitsToPixels(57, 0, 88, 9);
    EXPECT_EQ(left.right() + 1, right.left());
}

TEST_F(DialogTest, EveryStatementAndClassBecomesItsControl) {
    RecordingDialog& window = open();
    struct Case {
        int id;
        const char* qtClass;
    } const cases[] = {
        {idList, "tessaly::ListView"},
        {idFolderLabel, "tessaly::StaticLabel"},
        {idSend, "QPushButton"},
        {idOwnerDrawn, "tessaly::OwnerDrawButton"},
        {idAutoCheck, "tessaly::CheckBox"},
        {idManualCheck, "tessaly::CheckBox"},
        {idRadioA1, "tessaly::RadioButton"},
        {idToEdit, "tessaly::Edit"},
        {idTextEdit, "tessaly::Edit"},
        {idTemplates, "tessaly::ComboBox"},
        {idChannels, "tessaly::ListBox"},
        {idProgress, "tessaly::ProgressBar"},
        {idSpin, "tessaly::UpDown"},
        {idDate, "tessaly::DateTimePicker"},
        {idGroup, "QGroupBox"},
        {idUnknownClass, "QWidget"},
    };
    for (const Case& c : cases) {
        QWidget* widget = window.item(c.id);
        ASSERT_NE(widget, nullptr) << c.id;
        EXPECT_STREQ(widget->metaObject()->className(), c.qtClass) << c.id;
    }
    EXPECT_EQ(window.item(4242), nullptr);
    EXPECT_TRUE(window.edit(idTextEdit)->isMultiLine());
    EXPECT_FALSE(window.edit(idToEdit)->isMultiLine());
    EXPECT_TRUE(window.edit(idReadOnlyEdit)->isReadOnly());
    EXPECT_TRUE(window.edit(idDigitsEdit)->isDigitsOnly());
    EXPECT_TRUE(window.comboBox(idSortedCombo)->isSorted());
    EXPECT_TRUE(window.listBox(idLanguages)->isMultipleSelection());
    EXPECT_FALSE(window.listBox(idChannels)->isMultipleSelection());
    EXPECT_EQ(window.dateTimePicker(idTime)->mode(), DateTimePicker::Mode::Time);
    EXPECT_EQ(window.upDown(idSpin)->buddy(), window.edit(idBuddy));
    EXPECT_FALSE(window.isItemVisible(idHiddenLabel));
    EXPECT_FALSE(window.isItemEnabled(idDisabledButton));
    // Positions in dialog units, pixels on screen.
    EXPECT_EQ(window.itemRect(idToEdit), QRect(61, 3, 149, 21));
}

TEST_F(DialogTest, TopLevelWindowsFillTheScreenAndPopUpsAreBoxes) {
    RecordingDialog& window = open();
    EXPECT_EQ(window.window()->size(), QSize(kScreenWidth, kScreenHeight));
    EXPECT_EQ(window.clientSize(), QSize(240, 268));
    EXPECT_EQ(window.window()->windowTitle(), QStringLiteral("SMS"));

    RecordingDialog box(kSmallBox, &window);
    box.setPresentation(Presentation::PopUp);
    ASSERT_TRUE(box.create());
    EXPECT_LT(box.window()->width(), kScreenWidth);
    EXPECT_LT(box.window()->height(), kScreenHeight / 2);
    EXPECT_EQ(box.window()->parentWidget(), window.window());
}

TEST_F(DialogTest, AFingerHeldOnAnEditAsksForItsMenuAndTheReleaseIsNoTap) {
    RecordingDialog& window = open();
    Edit* edit = window.edit(idToEdit);
    ASSERT_NE(edit, nullptr);
    int holds = 0;
    QObject::connect(edit, &Edit::tapAndHold, edit, [&](QPoint) { ++holds; });
    holdLeftButton(*edit->editor(), QPoint(5, 5), 200);
    EXPECT_EQ(holds, 0);
    holdLeftButton(*edit->editor(), QPoint(5, 5));
    EXPECT_EQ(holds, 1);
    // Moving away while held is a drag (selecting text), not a hold.
    QTest::mousePress(edit->editor(), Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseMove(edit->editor(), QPoint(40, 5));
    clock.advance(600);
    QTest::mouseRelease(edit->editor(), Qt::LeftButton, {}, QPoint(40, 5));
    EXPECT_EQ(holds, 1);
}

TEST_F(DialogTest, TextShowEnableAndCheckByIdActOnEachKind) {
    RecordingDialog& window = open();
    for (int id : {idFolderLabel, idSend, idAutoCheck, idToEdit, idGroup}) {
        window.setItemText(id, QStringLiteral("Outbox"));
        EXPECT_EQ(window.itemText(id), QStringLiteral("Outbox")) << id;
    }
    window.setItemText(idTextEdit, QStringLiteral("a\r\nb\nc"));
    EXPECT_EQ(window.itemText(idTextEdit), QStringLiteral("a\r\nb\r\nc"));
    window.setItemInt(idToEdit, 42);
    EXPECT_EQ(window.itemInt(idToEdit), 42);

    window.showItem(idHiddenLabel, true);
    window.showItem(idSend, false);
    EXPECT_TRUE(window.isItemVisible(idHiddenLabel));
    EXPECT_FALSE(window.isItemVisible(idSend));
    window.enableItem(idDisabledButton, true);
    EXPECT_TRUE(window.isItemEnabled(idDisabledButton));

    window.checkItem(idAutoCheck, BST_CHECKED);
    EXPECT_EQ(window.isItemChecked(idAutoCheck), BST_CHECKED);
    window.checkRadioButton(idRadioA1, idRadioA2, idRadioA2);
    EXPECT_EQ(window.isItemChecked(idRadioA1), BST_UNCHECKED);
    EXPECT_EQ(window.isItemChecked(idRadioA2), BST_CHECKED);
    // Operations on ids that do not exist are ignored.
    window.setItemText(4242, QStringLiteral("x"));
    EXPECT_EQ(window.itemText(4242), QString());
    EXPECT_FALSE(window.isItemVisible(4242));
}

TEST_F(DialogTest, ClicksOnButtonsFollowTheirStyle) {
    RecordingDialog& window = open();
    window.checkRadioButton(idRadioA1, idRadioB2, 0);
    window.checkItem(idRadioB1, BST_CHECKED);
    struct Step {
        int click;
        std::vector<int> checkedAfter; // among the radios and check boxes
    } const steps[] = {
        {idRadioA1, {idRadioA1, idRadioB1}}, // the other group stays
        {idRadioA2, {idRadioA2, idRadioB1}}, // its own group is unchecked
        {idRadioA2, {idRadioA2, idRadioB1}}, // a click never unchecks a radio
        {idAutoCheck, {idAutoCheck, idRadioA2, idRadioB1}},
        {idManualCheck, {idAutoCheck, idRadioA2, idRadioB1}}, // without the auto style: no change
        {idAutoCheck, {idRadioA2, idRadioB1}},
    };
    for (const Step& step : steps) {
        ASSERT_TRUE(testkit::click(window, step.click));
        std::vector<int> checked;
        for (int id : {idAutoCheck, idManualCheck, idRadioA1, idRadioA2, idRadioB1, idRadioB2})
            if (window.isItemChecked(id))
                checked.push_back(id);
        std::sort(checked.begin(), checked.end());
        std::vector<int> expected = step.checkedAfter;
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(checked, expected) << "after clicking " << step.click;
    }
    // Every click is a command, whatever the state did.
    EXPECT_EQ(window.entries("command").size(), std::size(steps));
    // Hidden or disabled controls cannot be clicked; a plain label sends nothing.
    EXPECT_FALSE(testkit::click(window, idDisabledButton));
    EXPECT_FALSE(testkit::click(window, idPlainLabel));
    EXPECT_FALSE(testkit::click(window, idHiddenLabel));
}

TEST_F(DialogTest, NotificationsReachTheirTypedHandlers) {
    RecordingDialog& window = open();
    ListView* list = window.listView(idList);
    list->insertColumn(0, QStringLiteral("From"), 80);
    list->insertColumn(1, QStringLiteral("Text"), 100);
    for (int row = 0; row < 3; ++row)
        list->insertItem(row, QStringLiteral("row %1").arg(row));
    ComboBox* combo = window.comboBox(idTemplates);
    combo->addString(QStringLiteral("Insert Template"));
    combo->addString(QStringLiteral("Greeting"));
    window.listBox(idChannels)->addString(QStringLiteral("50"));
    window.upDown(idSpin)->setRange(0, 10);

    struct Case {
        const char* name;
        std::function<bool()> act;
        std::vector<std::string> expected;
    } const cases[] = {
        {"button", [&] { return testkit::click(window, idSend); }, {"command 10054"}},
        {"clickable label",
         [&] { return testkit::click(window, idFolderLabel); },
         {"command 10015"}},
        {"typing",
         [&] { return testkit::type(window, idToEdit, QStringLiteral("1")); },
         {"setfocus 10010", "editupdate 10010", "editchange 10010"}},
        {"list tap",
         [&] { return testkit::select(window, idList, 2, 1); },
         {"listclick 10032 2 1"}},
        {"column click",
         [&] { return testkit::columnClick(window, idList, 1); },
         {"columnclick 10032 1"}},
        {"enter on the list",
         [&] { return testkit::pressKey(window, idList, Qt::Key_Return); },
         {"keydown 10032 13"}},
        {"tap and hold",
         [&] { return testkit::tapAndHold(window, idList, 1); },
         {"taphold 10032 1"}},
        {"left button held on a row",
         [&] { return holdLeftButton(*window.listView(idList)->viewport(), rowCentre(window, 1)); },
         {"taphold 10032 1"}},
        {"left button pressed briefly on a row",
         [&] {
             return holdLeftButton(*window.listView(idList)->viewport(), rowCentre(window, 1), 200);
         },
         {"listclick 10032 1 0"}},

        {"combo open", [&] { return testkit::dropDown(window, idTemplates); }, {"dropdown 10075"}},
        {"combo close", [&] { return testkit::closeUp(window, idTemplates); }, {"closeup 10075"}},
        {"combo pick",
         [&] { return testkit::select(window, idTemplates, 1); },
         {"comboselchange 10075"}},
        {"list box pick",
         [&] { return testkit::select(window, idChannels, 0); },
         {"listboxselchange 12050"}},
        {"arrow up",
         [&] {
             window.upDown(idSpin)->stepBy(+1);
             return true;
         },
         {"editupdate 10091", "editchange 10091", "updown 10092 1"}},
        {"activation", [&] { return testkit::activate(window, true); }, {"activate"}},
        {"deactivation", [&] { return testkit::activate(window, false); }, {"deactivate"}},
    };
    for (const Case& c : cases) {
        window.log.clear();
        ASSERT_TRUE(c.act()) << c.name;
        // The expected lines come in this order; focus, size and activation lines may come
        // between them, but no command unless expected.
        auto next = window.log.begin();
        for (const std::string& line : c.expected) {
            next = std::find(next, window.log.end(), line);
            EXPECT_NE(next, window.log.end()) << c.name << ": no " << line;
        }
        const bool commandExpected = c.expected.front().rfind("command", 0) == 0;
        EXPECT_EQ(window.entries("command").size(), commandExpected ? 1u : 0u) << c.name;
    }
    // The tapped row is selected, so the handler can read it.
    EXPECT_EQ(list->selectedRow(), 1);
}

TEST_F(DialogTest, ProgrammaticChangesDoNotPoseAsThePerson) {
    RecordingDialog& window = open();
    window.comboBox(idTemplates)->addString(QStringLiteral("a"));
    window.comboBox(idTemplates)->setCurSel(0);
    window.listBox(idChannels)->addString(QStringLiteral("7"));
    window.listBox(idChannels)->setCurSel(0);
    window.dateTimePicker(idDate)->setSystemTime(SYSTEMTIME{2024, 2, 4, 29, 8, 30, 0, 0});
    window.listView(idList)->insertColumn(0, QStringLiteral("From"), 80);
    window.listView(idList)->setColumnWidth(0, 50);
    EXPECT_TRUE(window.entries("comboselchange").empty());
    EXPECT_TRUE(window.entries("listboxselchange").empty());
    EXPECT_TRUE(window.entries("datetime").empty());
    EXPECT_TRUE(window.entries("columnwidth").empty());
}

TEST_F(DialogTest, SortedListsInsertCaseInsensitivelyAndKeepItemData) {
    RecordingDialog& window = open();
    ComboBox* sorted = window.comboBox(idSortedCombo);
    ComboBox* unsorted = window.comboBox(idTemplates);
    ListBox* channels = window.listBox(idChannels);
    const QStringList input = {"52", "100", "b", "A", "50", "a"};
    for (const QString& text : input) {
        const int at = sorted->addString(text);
        sorted->setItemData(at, text.size() * 10 + text.at(0).unicode());
        channels->setItemData(channels->addString(text), text.at(0).unicode());
        unsorted->addString(text);
    }
    const QStringList expected = {"100", "50", "52", "A", "a", "b"};
    for (int i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(sorted->itemText(i), expected[i]);
        EXPECT_EQ(channels->text(i), expected[i]);
        EXPECT_EQ(unsorted->itemText(i), input[i]);
        EXPECT_EQ(sorted->getItemData(i), expected[i].size() * 10 + expected[i].at(0).unicode());
        EXPECT_EQ(channels->getItemData(i), expected[i].at(0).unicode());
    }
    EXPECT_EQ(channels->findStringExact(-1, QStringLiteral("B")), 5);
    EXPECT_EQ(channels->findStringExact(-1, QStringLiteral("5")), LB_ERR);
    EXPECT_EQ(sorted->findStringExact(-1, QStringLiteral("A")), 3);
    EXPECT_EQ(sorted->deleteString(9), LB_ERR);
    EXPECT_EQ(sorted->deleteString(0), 5);
    EXPECT_EQ(sorted->setCurSel(7), LB_ERR);
    EXPECT_EQ(sorted->curSel(), -1);
}

TEST_F(DialogTest, MultipleSelectionListBoxTogglesEntries) {
    RecordingDialog& window = open();
    ListBox* languages = window.listBox(idLanguages);
    for (const char* name : {"German", "English", "Italian"})
        languages->addString(QString::fromLatin1(name));
    ASSERT_TRUE(testkit::select(window, idLanguages, 0)); // English
    ASSERT_TRUE(testkit::select(window, idLanguages, 1)); // German
    EXPECT_EQ(languages->selItems(), (std::vector<int>{0, 1}));
    ASSERT_TRUE(testkit::select(window, idLanguages, 0));
    EXPECT_EQ(languages->selItems(), (std::vector<int>{1}));
    EXPECT_EQ(window.entries("listboxselchange").size(), 3u);
    languages->setSelAll(false);
    EXPECT_EQ(languages->selCount(), 0);
    EXPECT_FALSE(testkit::select(window, idLanguages, 3));
}

// The Inbox's default widths on the 240-pixel screen, its last column filling what is left
// beside a vertical scroll bar: dates and names must show whole, as on the phone.
TEST_F(DialogTest, DefaultListColumnsShowWholeDatesAndNames) {
    ListView list;
    list.resize(kScreenWidth, 200);
    const int widths[] = {20, 80, 100, 40};
    for (int column = 0; column < 4; ++column)
        list.insertColumn(column, QString(), widths[column]);
    for (int row = 0; row < 40; ++row)
        list.insertItem(row, QString());
    list.setLastColumnFillsWidth(true);
    list.show();
    QCoreApplication::processEvents();
    ASSERT_TRUE(list.verticalScrollBar()->isVisible());

    // What an item view's delegate keeps for a cell's text: the column less a margin each side.
    const int margin = list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &list) + 1;
    const auto fitsWhole = [&](const QString& text, int column) {
        const int room = list.columnWidth(column) - 2 * margin;
        return list.fontMetrics().elidedText(text, Qt::ElideRight, room) == text;
    };
    for (const char* date : {"05-17", "14:05", "12-31", "00:00"})
        EXPECT_TRUE(fitsWhole(QString::fromLatin1(date), 3))
            << date << " in " << list.columnWidth(3);
    for (const char* name : {"Max Lehmann", "Clara Neumann", "+447700900902"})
        EXPECT_TRUE(fitsWhole(QString::fromLatin1(name), 1)) << name;
}

TEST_F(DialogTest, ListViewKeepsRowsColumnsAndStyles) {
    RecordingDialog& window = open();
    ListView* list = window.listView(idList);
    const int widths[] = {20, 80, 100, 40};
    const char* headers[] = {"", "From", "Text", "Date"};
    for (int column = 0; column < 4; ++column)
        list->insertColumn(column, QString::fromLatin1(headers[column]), widths[column]);
    QPixmap image(16, 16);
    image.fill(Qt::red);
    list->setImageList({image, image, image, image});
    for (int row = 0; row < 5; ++row) {
        const int at = list->insertItem(row, QString(), row % 4, 1000 + row);
        list->setItemText(at, 1, QStringLiteral("+4917%1").arg(row));
        list->setItemText(at, 2, QStringLiteral("text %1").arg(row));
    }
    // Insert in the middle, past the end, delete.
    EXPECT_EQ(list->insertItem(2, QStringLiteral("mid"), 1, 77), 2);
    EXPECT_EQ(list->insertItem(100, QStringLiteral("end"), -1, 88), 6);
    EXPECT_TRUE(list->deleteItem(0));
    EXPECT_FALSE(list->deleteItem(40));

    EXPECT_EQ(list->itemCount(), 6);
    EXPECT_EQ(list->columnCount(), 4);
    EXPECT_EQ(list->columnText(3), QStringLiteral("Date"));
    EXPECT_EQ(list->columnWidth(2), 100);
    const LPARAM dataAfter[] = {1001, 77, 1002, 1003, 1004, 88};
    for (int row = 0; row < 6; ++row)
        EXPECT_EQ(list->getItemData(row), dataAfter[row]) << row;
    EXPECT_EQ(list->itemImage(1), 1);
    EXPECT_EQ(list->itemImage(5), -1);
    EXPECT_EQ(list->itemText(0, 1), QStringLiteral("+49171"));
    EXPECT_EQ(list->findItemData(1003), 3);
    EXPECT_EQ(list->findItemData(5), -1);

    list->setItemSelected(3, true);
    EXPECT_EQ(list->selectedRow(), 3);
    list->ensureVisible(3);

    list->setExtendedStyle(LVS_EX_GRIDLINES | LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    EXPECT_TRUE(list->showGrid());
    EXPECT_TRUE(list->setItemChecked(2, true));
    EXPECT_TRUE(list->isItemChecked(2));
    EXPECT_FALSE(list->isItemChecked(1));
    list->setExtendedStyle(LVS_EX_FULLROWSELECT);
    EXPECT_FALSE(list->setItemChecked(2, true));

    list->deleteAllColumns();
    list->deleteAllItems();
    EXPECT_EQ(list->columnCount(), 0);
    EXPECT_EQ(list->itemCount(), 0);
    EXPECT_EQ(list->getItemData(0), 0);
}

TEST_F(DialogTest, DraggingAColumnDividerIsReportedOnce) {
    RecordingDialog& window = open();
    ListView* list = window.listView(idList);
    list->insertColumn(0, QStringLiteral("From"), 80);
    list->insertColumn(1, QStringLiteral("Text"), 100);
    ASSERT_TRUE(testkit::dragColumnDivider(window, idList, 0, 60));
    EXPECT_EQ(window.entries("columnwidth"), (std::vector<std::string>{"columnwidth 10032 0 60"}));
    EXPECT_TRUE(window.entries("columnclick").empty());
}

TEST_F(DialogTest, AFillingLastColumnTakesTheRestAndDragsReportTheDraggedColumn) {
    RecordingDialog& window = open();
    ListView* list = window.listView(idList);
    list->insertColumn(0, QStringLiteral("From"), 80);
    list->insertColumn(1, QStringLiteral("Text"), 40);
    list->setLastColumnFillsWidth(true);
    const int viewportWidth = list->viewport()->width();
    EXPECT_EQ(list->columnWidth(1), viewportWidth - 80);
    ASSERT_TRUE(testkit::dragColumnDivider(window, idList, 0, 60));
    EXPECT_EQ(list->columnWidth(1), viewportWidth - 60);
    EXPECT_EQ(window.entries("columnwidth"), (std::vector<std::string>{"columnwidth 10032 0 60"}));
}

TEST_F(DialogTest, EditPositionsCountLineBreaksAsTwo) {
    RecordingDialog& window = open();
    Edit* text = window.edit(idTextEdit);
    text->setText(QStringLiteral("ab\r\ncd\ref"));
    EXPECT_EQ(text->text(), QStringLiteral("ab\r\ncd\r\nef"));
    EXPECT_EQ(text->textLength(), 10);
    struct Case {
        int start;
        int end;
        std::pair<int, int> selection;
        QString replacement;
        QString after;
    } const cases[] = {
        {4, 6, {4, 6}, "X", "ab\r\nX\r\nef"},        {2, 4, {2, 4}, "", "abX\r\nef"},
        {0, -1, {0, 7}, "new\nline", "new\r\nline"}, {-1, 0, {9, 9}, "!", "new\r\nline!"},
        {5, 5, {5, 5}, "\r\n", "new\r\n\r\nline!"},
    };
    for (const Case& c : cases) {
        text->setSel(c.start, c.end);
        EXPECT_EQ(text->sel(), c.selection) << c.start << "," << c.end;
        text->replaceSel(c.replacement);
        EXPECT_EQ(text->text(), c.after);
    }
    text->setCaretPos(5);
    EXPECT_EQ(text->caretPos(), 5);
    text->scrollCaret();
}

TEST_F(DialogTest, EditModifiedFlagDigitsReadOnlyAndClipboard) {
    RecordingDialog& window = open();
    Edit* to = window.edit(idToEdit);
    to->setText(QStringLiteral("+49"));
    EXPECT_FALSE(to->isModified());
    ASSERT_TRUE(testkit::type(window, idToEdit, QStringLiteral("1")));
    EXPECT_TRUE(to->isModified());
    to->setModified(false);
    EXPECT_FALSE(to->isModified());

    struct Case {
        int id;
        QString typed;
        QString result;
    } const cases[] = {
        {idDigitsEdit, "1a2-3 ", "123"},
        {idToEdit, "x", "+491x"},
        {idTextEdit, "a\nb", "a\r\nb"},
    };
    for (const Case& c : cases) {
        ASSERT_TRUE(testkit::type(window, c.id, c.typed));
        EXPECT_EQ(window.itemText(c.id), c.result) << c.id;
    }
    window.setItemText(idReadOnlyEdit, QStringLiteral("fixed"));
    EXPECT_FALSE(testkit::type(window, idReadOnlyEdit, QStringLiteral("x")));
    EXPECT_EQ(window.itemText(idReadOnlyEdit), QStringLiteral("fixed"));

    // Clipboard commands; a pasted text is not checked by the digits-only style.
    Edit* digits = window.edit(idDigitsEdit);
    to->setSel(0, 3);
    to->copy();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("+49"));
    to->cut();
    EXPECT_EQ(to->text(), QStringLiteral("1x"));
    digits->setSel(0, -1);
    digits->paste();
    EXPECT_EQ(digits->text(), QStringLiteral("+49"));
    digits->selectAll();
    digits->clear();
    EXPECT_EQ(digits->text(), QString());
    Edit* fixed = window.edit(idReadOnlyEdit);
    fixed->selectAll();
    fixed->cut();
    EXPECT_EQ(fixed->text(), QStringLiteral("fixed"));
}

TEST_F(DialogTest, ProgressUpDownAndDateTime) {
    RecordingDialog& window = open();
    ProgressBar* progress = window.progressBar(idProgress);
    progress->setRange(0, 5);
    progress->setStep(2);
    std::vector<int> positions;
    for (int i = 0; i < 4; ++i) {
        progress->stepIt();
        positions.push_back(progress->pos());
    }
    EXPECT_EQ(positions, (std::vector<int>{2, 4, 1, 3})); // past the top it starts again
    EXPECT_EQ(progress->setPos(99), 3);
    EXPECT_EQ(progress->pos(), 5);

    UpDown* spin = window.upDown(idSpin);
    spin->setRange(1, 3);
    spin->setPos(2);
    EXPECT_EQ(window.itemText(idBuddy), QStringLiteral("2"));
    for (int i = 0; i < 3; ++i)
        spin->stepBy(+1);
    EXPECT_EQ(spin->pos(), 3);
    window.setItemText(idBuddy, QStringLiteral("1"));
    spin->stepBy(-1); // the typed value counts; the bottom holds
    EXPECT_EQ(spin->pos(), 1);
    EXPECT_GT(window.itemRect(idSpin).left(), window.itemRect(idBuddy).right());

    struct Format {
        const char* platform;
        const char* qt;
    } const formats[] = {
        {"dd'.'MM'.'yyyy", "dd'.'MM'.'yyyy"}, {"HH:mm", "HH:mm"},
        {"hh':'mm tt", "hh':'mm AP"},         {"ddd, d MMM yy", "ddd, d MMM yy"},
        {"'It''s' H", "'It''s' H"},           {"yyyy week", "yyyy 'w''ee''k'"},
    };
    for (const Format& f : formats)
        EXPECT_EQ(qtDateTimeFormat(QString::fromLatin1(f.platform)), QString::fromLatin1(f.qt))
            << f.platform;
    DateTimePicker* date = window.dateTimePicker(idDate);
    date->setFormat(QStringLiteral("dd'.'MM'.'yyyy"));
    date->setSystemTime(SYSTEMTIME{2024, 2, 4, 29, 8, 30, 0, 0});
    EXPECT_EQ(date->text(), QStringLiteral("29.02.2024"));
    const SYSTEMTIME back = date->systemTime();
    EXPECT_EQ(back.wDay, 29);
    EXPECT_EQ(back.wHour, 8);
    date->setSystemTime(SYSTEMTIME{2024, 2, 0, 30, 0, 0, 0, 0}); // no such day: ignored
    EXPECT_EQ(date->systemTime().wDay, 29);
}

// ---- questions to the person ----

TEST_F(DialogTest, YesNoBoxIsAnsweredAndActedOn) {
    struct Case {
        int answer;
        int rowsLeft;
    } const cases[] = {{IDYES, 1}, {IDNO, 2}};
    for (const Case& c : cases) {
        RecordingDialog& window = open();
        ListView* list = window.listView(idList);
        list->insertColumn(0, QString(), 50);
        list->insertItem(0, QStringLiteral("one"));
        list->insertItem(1, QStringLiteral("two"));
        list->setItemSelected(1, true);
        window.commandHook = [](RecordingDialog& self, int id) {
            if (id != idSend)
                return false;
            if (UserAgent::current().messageBox(
                    self.window(),
                    QStringLiteral("Are you sure that you want to delete this message?"),
                    QStringLiteral("SMS"), MB_YESNO | MB_ICONQUESTION) == IDYES)
                self.listView(idList)->deleteItem(self.listView(idList)->selectedRow());
            return true;
        };
        user.answerBox(c.answer);
        user.forget();
        ASSERT_TRUE(testkit::click(window, idSend));
        EXPECT_EQ(list->itemCount(), c.rowsLeft);
        ASSERT_EQ(user.boxes().size(), 1u);
        EXPECT_EQ(user.boxes()[0].buttons(), MB_YESNO);
        EXPECT_EQ(user.boxes()[0].icon(), MB_ICONQUESTION);
        EXPECT_EQ(user.boxes()[0].caption, QStringLiteral("SMS"));
        EXPECT_EQ(user.boxes()[0].owner, window.window());
    }
}

TEST_F(DialogTest, TrackedMenuRecordsCheckMarksAndReturnsTheChoice) {
    RecordingDialog& window = open();
    window.commandHook = [](RecordingDialog& self, int id) {
        if (id != idFolderLabel)
            return false;
        std::optional<Menu> menu = Menu::load(kFolderMenu);
        Menu popup = menu->subMenu(0);
        popup.checkItem(cmdOutbox, true);
        popup.enableItem(cmdCellBroadcast, false);
        self.setItemText(idFolderLabel, QStringLiteral("Show"));
        const QRect label = self.itemRect(idFolderLabel);
        const int chosen = popup.track(self.window(), label.bottomLeft(), TPM_LEFTALIGN);
        self.setItemText(idFolderLabel, QString::number(chosen));
        return true;
    };
    user.chooseMenu(cmdInbox).chooseMenu(0);
    ASSERT_TRUE(testkit::click(window, idFolderLabel));
    EXPECT_EQ(window.itemText(idFolderLabel), QString::number(cmdInbox));
    ASSERT_TRUE(testkit::click(window, idFolderLabel));
    EXPECT_EQ(window.itemText(idFolderLabel), QStringLiteral("0"));

    ASSERT_EQ(user.menus().size(), 2u);
    const testkit::ShownMenu& shown = user.menus()[0];
    EXPECT_EQ(shown.checkedIds(), (std::vector<int>{cmdOutbox}));
    ASSERT_EQ(shown.items.size(), 4u);
    EXPECT_TRUE(shown.items[2].separator);
    EXPECT_EQ(shown.items[3].text, QStringLiteral("Cellbroadcast"));
    EXPECT_FALSE(shown.items[3].enabled);
    EXPECT_TRUE(shown.items[0].enabled);
    // The resource itself is untouched by the window's marks.
    EXPECT_FALSE(Menu::load(kFolderMenu)->subMenu(0).findItem(cmdOutbox)->checked);
}

TEST_F(DialogTest, ModalRunsAreScriptedWithTheLiveDialog) {
    RecordingDialog& window = open();
    // The outer modal's OK button opens a nested modal, whose answer the outer one shows.
    window.commandHook = [](RecordingDialog& self, int id) {
        if (id != idSend)
            return false;
        RecordingDialog outer(kSmallBox, &self);
        outer.commandHook = [](RecordingDialog& box, int command) {
            if (command != IDOK)
                return false;
            RecordingDialog inner(kSmallBox, &box);
            const int innerCode = inner.doModal();
            box.setItemText(12055, QString::number(innerCode));
            box.endDialog(innerCode == IDOK ? 10 : 20);
            return true;
        };
        self.setItemInt(idToEdit, outer.doModal());
        return true;
    };
    QString seenInOuter;
    user.runModal([&](Dialog& outer) {
            EXPECT_TRUE(outer.isVisible());
            EXPECT_TRUE(outer.isModalRunning());
            ASSERT_TRUE(testkit::type(outer, 12055, QStringLiteral("42")));
            ASSERT_TRUE(testkit::click(outer, IDOK));
            seenInOuter = outer.itemText(12055);
        })
        .runModal([&](Dialog& inner) {
            const auto windows = Dialog::windows();
            EXPECT_EQ(std::count_if(windows.begin(), windows.end(),
                                    [](Dialog* d) { return d->templateId() == kSmallBox; }),
                      2);
            ASSERT_TRUE(testkit::click(inner, IDOK));
        });
    ASSERT_TRUE(testkit::click(window, idSend));
    EXPECT_EQ(window.itemInt(idToEdit), 10);
    EXPECT_EQ(seenInOuter, QString::number(IDOK));
    ASSERT_EQ(user.modals().size(), 2u);
    EXPECT_EQ(user.modals()[1].templateId, kSmallBox);
    // Both modal windows are gone again.
    EXPECT_EQ(testkit::findWindow(kSmallBox), nullptr);
}

TEST_F(DialogTest, ModalRunsEndWithCancelOrFailToStart) {
    RecordingDialog unanswered(kSmallBox);
    user.runModal([](Dialog&) {});
    EXPECT_EQ(unanswered.doModal(), IDCANCEL);

    RecordingDialog cancelled(kSmallBox);
    user.runModal([](Dialog& box) { ASSERT_TRUE(testkit::click(box, IDCANCEL)); });
    EXPECT_EQ(cancelled.doModal(), IDCANCEL);

    RecordingDialog missing(4711);
    EXPECT_EQ(missing.templateId(), 4711);
    EXPECT_EQ(missing.doModal(), -1);
    EXPECT_FALSE(missing.create());
}

TEST_F(DialogTest, TheScriptedUserFailsOnQuestionsItWasNotToldAbout) {
    EXPECT_NONFATAL_FAILURE(
        {
            testkit::ScriptedUser strict;
            EXPECT_EQ(UserAgent::current().messageBox(nullptr, QStringLiteral("Sure?"),
                                                      QStringLiteral("SMS"), MB_YESNO),
                      IDNO);
        },
        "unexpected message box \"Sure?\"");
    EXPECT_NONFATAL_FAILURE(
        {
            testkit::ScriptedUser strict;
            strict.answerBox(IDOK);
            Menu(MenuItem{}).track(nullptr, QPoint());
            strict.forget();
            UserAgent::current().messageBox(nullptr, QString(), QString(), MB_OK);
        },
        "unexpected popup menu");
    EXPECT_NONFATAL_FAILURE(
        {
            testkit::ScriptedUser strict;
            strict.chooseMenu(cmdDelete);
        },
        "nobody asked for");
    EXPECT_NONFATAL_FAILURE(
        {
            testkit::ScriptedUser strict;
            strict.chooseMenu(cmdDelete);
            Menu::load(kPageMenu)->subMenu(0).track(nullptr, QPoint());
        },
        "which is disabled");
}

TEST_F(DialogTest, MessageBoxCanBeEndedByItsOwnerWhileShown) {
    RecordingDialog& window = open();
    user.answerBox(IDCANCEL, [&](const testkit::ShownBox& box) {
        EXPECT_TRUE(UserAgent::current().endMessageBox(box.owner, IDOK));
    });
    EXPECT_EQ(UserAgent::current().messageBox(window.window(), QStringLiteral("Sent"),
                                              QStringLiteral("SMS"),
                                              MB_OK | MB_ICONINFORMATION | MB_TOPMOST),
              IDOK);
    EXPECT_FALSE(UserAgent::current().endMessageBox(window.window(), IDOK));
}

} // namespace
