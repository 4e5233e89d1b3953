// A 1,600-character text through the PDU codec, as the modem backend and the emulator handle
// it: split into concatenated parts and encoded, and the parts decoded and joined. The counter
// `per_message` is the time per PDU.

#include "suite/telephony/pdu/pdu.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

namespace pdu = tessaly::pdu;

std::u16string sampleText(bool ucs2) {
    const std::u16string gsm = u"Meet you at 7, {bring} the €5 & don't be late! ";
    const std::u16string wide = u"Встретимся в 7, не опаздывай 😀 ";
    std::u16string text;
    while (text.size() < 1600)
        text += ucs2 ? wide : gsm;
    text.resize(1600);
    return text;
}

const pdu::Address& destination() {
    static const pdu::Address address = pdu::Address::fromText(u"+4917012345678");
    return address;
}

void reportPerMessage(benchmark::State& state, std::size_t messages, bool ucs2) {
    state.counters["messages"] = double(messages);
    state.counters["per_message"] =
        benchmark::Counter(double(messages), benchmark::Counter::kIsIterationInvariantRate |
                                                 benchmark::Counter::kInvert);
    state.SetLabel(ucs2 ? "UCS-2" : "GSM 7-bit");
}

void encodeText(benchmark::State& state) {
    const bool ucs2 = state.range(0) != 0;
    const std::u16string text = sampleText(ucs2);
    std::size_t messages = 0;
    for (auto _ : state) {
        const auto submits = pdu::makeSubmits(text, destination(), 0x42);
        messages = submits->size();
        for (const pdu::Submit& submit : *submits) {
            auto bytes = pdu::encode(submit);
            benchmark::DoNotOptimize(bytes);
        }
    }
    reportPerMessage(state, messages, ucs2);
}
BENCHMARK(encodeText)->Arg(0)->Arg(1)->ArgName("ucs2");

void decodeText(benchmark::State& state) {
    const bool ucs2 = state.range(0) != 0;
    std::vector<pdu::Bytes> parts;
    const auto submits = pdu::makeSubmits(sampleText(ucs2), destination(), 0x42);
    for (const pdu::Submit& submit : *submits)
        parts.push_back(*pdu::encode(submit));
    for (auto _ : state) {
        std::u16string joined;
        for (const pdu::Bytes& part : parts)
            joined += std::get<pdu::Submit>(*pdu::decode(part).value).userData.text;
        benchmark::DoNotOptimize(joined);
    }
    reportPerMessage(state, parts.size(), ucs2);
}
BENCHMARK(decodeText)->Arg(0)->Arg(1)->ArgName("ucs2");

} // namespace

BENCHMARK_MAIN();
