#pragma once

// Shared by the template tests: a private data directory and profile per test, the SMS string
// table in force, a clock fixed at a chosen minute and a scripted person.

#include "framework/datadir.h"
#include "framework/registry/profile.h"
#include "framework/registry/registry.h"
#include "framework/resources/resources.h"
#include "framework/time/clock.h"
#include "framework/ui/useragent.h"
#include "resources/sms_resources.h"
#include "tests/testkit/qstring_printer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <deque>
#include <ostream>

namespace templates_test {

class FixedClock final : public tessaly::Clock {
public:
    SYSTEMTIME now{};

    void set(int year, int month, int day, int hour, int minute) {
        now = SYSTEMTIME{};
        now.wYear = WORD(year);
        now.wMonth = WORD(month);
        now.wDay = WORD(day);
        now.wHour = WORD(hour);
        now.wMinute = WORD(minute);
    }
    SYSTEMTIME localNow() const override { return now; }
    tessaly::TimerHandle startTimer(int, std::function<void()>) override { return 1; }
    void stopTimer(tessaly::TimerHandle) override {}
};

// Answers message boxes and menus from queues; anything it was not told to expect fails.
class ScriptedPerson final : public tessaly::UserAgent {
public:
    std::deque<int> boxAnswers;
    std::deque<int> menuAnswers;
    QStringList boxTexts;
    std::vector<tessaly::MenuItem> menus;

    int messageBox(QWidget*, const QString& text, const QString&, UINT) override {
        boxTexts.append(text);
        return next(boxAnswers, "message box", IDCANCEL);
    }
    int trackPopupMenu(QWidget*, const tessaly::MenuItem& popup, QPoint) override {
        menus.push_back(popup);
        return next(menuAnswers, "menu", 0);
    }
    int runModal(tessaly::Dialog&) override { return unexpected("modal dialog", IDCANCEL); }
    tessaly::ContactPickerChoice
    pickContact(QWidget*, const QString&,
                const std::vector<tessaly::ContactPickerEntry>&) override {
        return unexpected("contact picker", tessaly::ContactPickerChoice{});
    }

private:
    static int next(std::deque<int>& answers, const char* what, int otherwise) {
        if (answers.empty())
            return unexpected(what, otherwise);
        const int answer = answers.front();
        answers.pop_front();
        return answer;
    }
    template <typename T> static T unexpected(const char* what, T answer) {
        ADD_FAILURE() << "unexpected " << what;
        return answer;
    }
};

class TemplatesTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dataDir.isValid());
        tessaly::setDataDirectory(dataDir.path());
        tessaly::profile::setRegistryKey(QStringLiteral("Halvern\\Tessaly"));
        tessaly::profile::setProfileName(QStringLiteral("SMS"));
        previousResources = tessaly::currentResources();
        tessaly::setCurrentResources(&tessaly::sms::resources());
        clock.set(2003, 5, 17, 14, 5);
        tessaly::Clock::install(&clock);
        tessaly::UserAgent::install(&person);
    }
    void TearDown() override {
        EXPECT_TRUE(person.boxAnswers.empty()) << "unanswered message boxes left";
        EXPECT_TRUE(person.menuAnswers.empty()) << "unanswered menus left";
        tessaly::UserAgent::install(nullptr);
        tessaly::Clock::install(nullptr);
        tessaly::setCurrentResources(previousResources);
        tessaly::releaseRegistryHives();
        tessaly::setDataDirectory(QString());
    }

    static QString entry(const QString& section, const QString& name) {
        return tessaly::profile::getProfileString(section, name);
    }
    static void put(const QString& section, const QString& name, const QString& text) {
        ASSERT_TRUE(tessaly::profile::writeProfileString(section, name, text));
    }
    static bool sectionExists(const QString& section) {
        HKEY app = tessaly::profile::getAppRegistryKey();
        HKEY key = nullptr;
        const bool exists = RegOpenKeyExW(app, reinterpret_cast<LPCWSTR>(section.utf16()), 0, 0,
                                          &key) == ERROR_SUCCESS;
        if (exists)
            RegCloseKey(key);
        RegCloseKey(app);
        return exists;
    }

    QTemporaryDir dataDir;
    FixedClock clock;
    ScriptedPerson person;
    const tessaly::ResourceScript* previousResources = nullptr;
};

} // namespace templates_test
