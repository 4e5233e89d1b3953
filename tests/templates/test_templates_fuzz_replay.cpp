// Replays inputs through the placeholder fuzz target: tricky hand-made texts and a fixed set of
// random ones made of the characters placeholders are built from.

#include <QString>

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int replay(const std::string& input) {
    return LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()),
                                  input.size());
}

TEST(TemplatesFuzzReplay, HandMadeInputs) {
    const std::string inputs[] = {
        "",
        "[",
        "[:]",
        "]]]][[[[",
        "<<<<>>>>",
        "[Sender:First Name][Sender:First Name]",
        "\x02[Sender:Full Name] [Recipient:Full Name]",
        "[Recipient:[Recipient:[Recipient:Phone]]]",
        "[Time:Now] Now Now [Date:today] today [Date:tomorrow] [Date:yesterday]",
        "<Contact:<Sender:<Recipient:x>>>",
        std::string("a\0b[Sender:\0]", 13),
        "\xff\xfe[\xc3(:\x80]",
        std::string(3000, '['),
        std::string(3000, '<'),
    };
    for (const std::string& input : inputs)
        EXPECT_EQ(replay(input), 0);
}

TEST(TemplatesFuzzReplay, RandomTextsOfPlaceholderCharacters) {
    static const char* const pieces[] = {
        "[",         "]",         "<",     ">",       ":",   " ",       "Sender",
        "Recipient", "Time",      "Date",  "Contact", "Now", "today",   "tomorrow",
        "Phone",     "Full Name", "Hello", "x",       "\n",  "\xc3\xa9"};
    std::mt19937 random(20030517);
    for (int round = 0; round < 200; ++round) {
        std::string input(1, char(random() % 3));
        const int count = int(random() % 40);
        for (int i = 0; i < count; ++i)
            input += pieces[random() % std::size(pieces)];
        EXPECT_EQ(replay(input), 0) << input;
    }
}

} // namespace
