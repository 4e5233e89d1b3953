// Runs a fuzz target's entry point without libFuzzer, as a unit test: every seed of its corpus,
// each seed cut short and with bytes flipped, and pseudo-random inputs. Deterministic, so a
// failure reproduces; a crash or abort in the entry point fails the test.

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::vector<std::uint8_t>;

void run(const Input& input) {
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

std::vector<Input> seeds() {
    std::vector<Input> result;
    const QDir corpus(QStringLiteral(TESSALY_FUZZ_CORPUS));
    for (const QFileInfo& file : corpus.entryInfoList(QDir::Files, QDir::Name)) {
        QFile seed(file.absoluteFilePath());
        if (!seed.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = seed.readAll();
        result.emplace_back(bytes.begin(), bytes.end());
    }
    return result;
}

TEST(TESSALY_FUZZ_SUITE, SeedCorpus) {
    const std::vector<Input> corpus = seeds();
    ASSERT_FALSE(corpus.empty()) << "no seeds in " << TESSALY_FUZZ_CORPUS;
    for (const Input& seed : corpus) {
        run(seed);
        for (std::size_t length = 0; length < seed.size(); ++length)
            run(Input(seed.begin(), seed.begin() + std::ptrdiff_t(length)));
    }
}

TEST(TESSALY_FUZZ_SUITE, MutatedSeeds) {
    std::mt19937 random(20030517);
    for (const Input& seed : seeds()) {
        for (int round = 0; round < 500; ++round) {
            Input input = seed;
            const int edits = 1 + int(random() % 4);
            for (int edit = 0; edit < edits && !input.empty(); ++edit) {
                const std::size_t at = random() % input.size();
                switch (random() % 4) {
                case 0:
                    input[at] = std::uint8_t(random());
                    break;
                case 1:
                    input[at] = 0;
                    break;
                case 2:
                    input.erase(input.begin() + std::ptrdiff_t(at));
                    break;
                default:
                    input.insert(input.begin() + std::ptrdiff_t(at), std::uint8_t(random()));
                    break;
                }
            }
            run(input);
        }
    }
}

TEST(TESSALY_FUZZ_SUITE, RandomInputs) {
    std::mt19937 random(1601);
    for (int round = 0; round < 3000; ++round) {
        Input input(random() % 300);
        // Mostly zero bytes now and then, so that terminators and small numbers turn up.
        const bool sparse = round % 3 == 0;
        for (std::uint8_t& byte : input)
            byte = sparse && random() % 4 != 0 ? 0 : std::uint8_t(random());
        run(input);
    }
}

// The largest input the fuzzers are given (make fuzz passes the same -max_len): every seed
// repeated up to 1 MB must be handled in reasonable time.
constexpr std::size_t kLargestInput = 1 << 20;

TEST(TESSALY_FUZZ_SUITE, LargestInputs) {
    for (const Input& seed : seeds()) {
        if (seed.empty())
            continue;
        Input input;
        input.reserve(kLargestInput);
        while (input.size() + seed.size() <= kLargestInput)
            input.insert(input.end(), seed.begin(), seed.end());
        run(input);
    }
}

} // namespace
