#include "tests/framework/window_templates.h"

#include "framework/resources/resource_parser.h"

#include <gtest/gtest.h>

namespace tessaly::testdata {

const ResourceScript& windowScript() {
    static const ResourceScript script = [] {
        const ResourceParseResult parsed =
            parseResourceFile(QStringLiteral(TESSALY_WINDOW_TEST_DATA "/windows.rc"));
        if (!parsed.ok())
            ADD_FAILURE() << parsed.error->toString().toStdString();
        return parsed.script;
    }();
    return script;
}

} // namespace tessaly::testdata
