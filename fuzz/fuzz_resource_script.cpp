// Fuzz target for the resource-script parser: any bytes as a script (UTF-8, or UTF-16 with a
// byte-order mark), with every #include answered by a small header. The parser must end with a
// script or an error that names a line of the text, never crash or hang. libFuzzer entry point;
// the test replay_resource_script replays it.

#include "framework/resources/resource_parser.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const std::optional<QString> text = tessaly::decodeScriptText(bytes);
    if (!text)
        return 0;
    const tessaly::IncludeResolver header = [](const QString& name, const QString&,
                                               QString* displayName) -> std::optional<QString> {
        *displayName = name;
        if (name.startsWith(u'x'))
            return std::nullopt; // an include that cannot be found
        return QStringLiteral("#define IDC_FUZZ 100\n#define IDS_FUZZ \"fuzz\"\n");
    };
    const tessaly::ResourceParseResult result =
        tessaly::parseResourceScript(*text, QStringLiteral("fuzz.rc"), header);
    if (result.error && (result.error->line < 0 || result.error->message.isEmpty())) {
        std::fprintf(stderr, "fuzz_resource_script: an error without a line or a message\n");
        std::abort();
    }
    return 0;
}
