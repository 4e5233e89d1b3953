// Any byte string is offered to the PDU decoder, with and without a service-centre address in
// front: it must neither crash nor read outside the input, and a transfer-layer PDU it accepts
// must encode again and decode to the same message.

#include "suite/telephony/pdu/pdu.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    (void)tessaly::pdu::decodeWithServiceCentre(input);

    const auto decoded = tessaly::pdu::decode(input);
    if (!decoded)
        return 0;
    const auto encoded = tessaly::pdu::encode(*decoded);
    if (!encoded)
        std::abort();
    const auto again = tessaly::pdu::decode(*encoded);
    if (!again || !(*again.value == *decoded.value))
        std::abort();
    return 0;
}
