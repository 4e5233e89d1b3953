#include "util/date_time_picker.h"

#include "framework/resources/resources.h"
#include "resources/resource.h"
#include "resources/sms_resources.h"
#include "tests/testkit/qstring_printer.h"
#include "tests/testkit/system_time.h"
#include "tests/testkit/window_test.h"

#include <QGroupBox>

namespace {

using tessaly::Dialog;
using tessaly::sms::DateTimePickerDialog;
using tessaly::sms::DateTimePickerMode;

SYSTEMTIME at(int year, int month, int day, int hour, int minute) {
    return tessaly::testkit::at(year, month, day, hour, minute, 42);
}

class DateTimePickerTest : public tessaly::testkit::WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        previousResources_ = tessaly::currentResources();
        tessaly::setCurrentResources(&tessaly::sms::resources());
    }
    void TearDown() override {
        WindowTest::TearDown();
        tessaly::setCurrentResources(previousResources_);
    }

private:
    const tessaly::ResourceScript* previousResources_ = nullptr;
};

TEST_F(DateTimePickerTest, ResultTexts) {
    const struct {
        const char* title;
        DateTimePickerMode mode;
        SYSTEMTIME chosen;
        const char* result;
    } cases[] = {
        {"Time", DateTimePickerMode::Time, at(2003, 5, 17, 14, 5), "14:05 "},
        {"Time", DateTimePickerMode::Time, at(2003, 5, 17, 0, 0), "00:00 "},
        {"Date", DateTimePickerMode::Date, at(2003, 5, 17, 14, 5), " on 2003-05-17"},
        {"Date", DateTimePickerMode::Date, at(987, 1, 2, 23, 59), " on 0987-01-02"},
        // Only the exact name of the Time variable picks a time.
        {"time", DateTimePickerMode::Date, at(2003, 12, 31, 9, 7), " on 2003-12-31"},
        {"Time span", DateTimePickerMode::Date, at(2003, 12, 31, 9, 7), " on 2003-12-31"},
        {"", DateTimePickerMode::Date, at(2024, 2, 29, 9, 7), " on 2024-02-29"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        const DateTimePickerMode mode =
            tessaly::sms::dateTimePickerMode(QString::fromLatin1(c.title));
        EXPECT_EQ(mode, c.mode);
        EXPECT_EQ(tessaly::sms::dateTimePickerResult(mode, c.chosen),
                  QString::fromLatin1(c.result));
    }
    EXPECT_EQ(tessaly::sms::dateTimePickerTimeCaption(QStringLiteral("Time")),
              QStringLiteral("Choose Time"));
}

TEST_F(DateTimePickerTest, TheDialogInBothModes) {
    clock.setLocalNow(at(2024, 5, 17, 10, 0));
    const struct {
        const char* variable;
        int shownPicker;
        int hiddenPicker;
        const char* caption;
        const char* shownText; // the shown picker's text when it opens
        SYSTEMTIME chosen;     // set in the shown picker before the button is pressed
        int button;
        const char* result; // the string object afterwards
    } cases[] = {
        {"Time", 10003, 10002, "Choose Time", "10:00:42", at(2000, 1, 1, 14, 5), IDOK, "14:05 "},
        {"Date", 10002, 10003, "Choose Date", "2024-05-17", at(2024, 5, 18, 3, 4), IDOK,
         " on 2024-05-18"},
        {"Meeting", 10002, 10003, "Choose Date", "2024-05-17", at(2025, 1, 9, 3, 4), IDOK,
         " on 2025-01-09"},
        {"Time", 10003, 10002, "Choose Time", "10:00:42", at(2000, 1, 1, 14, 5), IDCANCEL,
         "untouched"},
        {"Date", 10002, 10003, "Choose Date", "2024-05-17", at(2024, 5, 18, 3, 4), IDCANCEL,
         "untouched"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.variable) + (c.button == IDOK ? " OK" : " Cancel"));
        user.runModal([&](Dialog& dialog) {
            EXPECT_EQ(dialog.templateId(), IDD_DATETIME_PICKER);
            EXPECT_EQ(dialog.title(), QString::fromLatin1(c.variable));
            EXPECT_TRUE(dialog.isItemVisible(c.shownPicker));
            EXPECT_FALSE(dialog.isItemVisible(c.hiddenPicker));
            EXPECT_EQ(dialog.itemAs<QGroupBox>(12003)->title(), QString::fromLatin1(c.caption));
            tessaly::DateTimePicker* picker = dialog.dateTimePicker(c.shownPicker);
            ASSERT_NE(picker, nullptr);
            EXPECT_EQ(picker->text(), QString::fromLatin1(c.shownText));
            picker->setSystemTime(c.chosen);
            EXPECT_TRUE(tessaly::testkit::click(dialog, c.button));
        });
        QString result = QStringLiteral("untouched");
        DateTimePickerDialog dialog(QString::fromLatin1(c.variable), result);
        EXPECT_EQ(dialog.doModal(), c.button);
        EXPECT_EQ(result, QString::fromLatin1(c.result));
    }
}

TEST_F(DateTimePickerTest, PickingAValue) {
    user.runModal([](Dialog& dialog) { tessaly::testkit::click(dialog, IDOK); })
        .runModal([](Dialog& dialog) { tessaly::testkit::click(dialog, IDCANCEL); })
        .runModal([](Dialog&) {}); // closed without a button
    EXPECT_EQ(tessaly::sms::pickDateTimeValue(QStringLiteral("Time")), QStringLiteral("10:00 "));
    EXPECT_EQ(tessaly::sms::pickDateTimeValue(QStringLiteral("Time")), std::nullopt);
    EXPECT_EQ(tessaly::sms::pickDateTimeValue(QStringLiteral("Date")), std::nullopt);

    // Without its template the box cannot open: nothing is chosen.
    tessaly::setCurrentResources(nullptr);
    EXPECT_EQ(tessaly::sms::pickDateTimeValue(QStringLiteral("Date")), std::nullopt);
}

} // namespace
