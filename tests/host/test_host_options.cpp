#include "host/host_options.h"

#include <gtest/gtest.h>

namespace {

using tessaly::host::parseHostArguments;

TEST(HostOptions, ArgumentsParseOrSayWhatIsWrong) {
    const struct {
        QStringList arguments;
        bool ok;
        QString dataDirectory;
        bool demo;
        QString screenshot;
        bool openMessages = false;
    } cases[] = {
        {{}, true, {}, false, {}},
        {{"--demo"}, true, {}, true, {}},
        {{"--data-dir", "/tmp/phone"}, true, "/tmp/phone", false, {}},
        {{"--data-dir=/tmp/p", "--demo", "--screenshot", "s.png"}, true, "/tmp/p", true, "s.png"},
        {{"--open-messages", "--screenshot", "m.png"}, true, {}, false, "m.png", true},
        {{"--data-dir"}, false, {}, false, {}},
        {{"--data-dir="}, false, {}, false, {}},
        {{"--colour"}, false, {}, false, {}},
        {{"extra"}, false, {}, false, {}},
    };
    for (const auto& c : cases) {
        QString error;
        const auto options =
            parseHostArguments(QStringList{QStringLiteral("tessaly-phone")} + c.arguments, &error);
        ASSERT_EQ(options.has_value(), c.ok) << c.arguments.join(u' ').toStdString();
        if (!c.ok) {
            EXPECT_FALSE(error.isEmpty()) << c.arguments.join(u' ').toStdString();
            continue;
        }
        EXPECT_EQ(options->dataDirectory, c.dataDirectory);
        EXPECT_EQ(options->demo, c.demo);
        EXPECT_EQ(options->screenshotPath, c.screenshot);
        EXPECT_EQ(options->openMessages, c.openMessages);
    }
}

} // namespace

namespace {

TEST(HostOptions, TheRadioIsChosenByName) {
    using tessaly::host::parseHostArguments;
    using tessaly::host::RadioKind;
    const std::pair<QStringList, std::optional<RadioKind>> cases[] = {
        {{}, RadioKind::Auto},
        {{"--modem", "auto"}, RadioKind::Auto},
        {{"--modem=simulator"}, RadioKind::Simulator},
        {{"--modem", "modemmanager"}, RadioKind::ModemManager},
        {{"--modem", "ofono"}, std::nullopt},
        {{"--screenshot", "a.png"}, RadioKind::Simulator},
        {{"--screenshot", "a.png", "--modem", "auto"}, RadioKind::Auto},
        {{"--screenshot", "a.png", "--modem=modemmanager"}, RadioKind::ModemManager},
        {{"--modem"}, std::nullopt},
    };
    for (const auto& [arguments, radio] : cases) {
        QString error;
        const auto options =
            parseHostArguments(QStringList{QStringLiteral("tessaly-phone")} + arguments, &error);
        ASSERT_EQ(options.has_value(), radio.has_value()) << arguments.join(u' ').toStdString();
        if (options)
            EXPECT_EQ(options->radio, *radio);
        else
            EXPECT_FALSE(error.isEmpty());
    }
}

} // namespace
