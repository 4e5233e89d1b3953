// Any byte string is a settings blob: decoding must neither crash nor read outside it, and what
// it yields must survive a round trip through the encoder unchanged.

#include "settings/sms_settings.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SmsSettings decoded;
    decoded.decode(QByteArrayView(data, qsizetype(size)));

    const QByteArray blob = decoded.encode();
    if (blob.size() != decoded.encodedSize())
        std::abort();
    SmsSettings again;
    again.decode(blob);
    if (!(again == decoded))
        std::abort();
    return 0;
}
