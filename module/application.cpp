// The module's application object: constructed while the host's dlopen loads Sms.tsm, before
// any export can be called.

#include "module/startup.h"

#include <QtGlobal>

namespace {

void initEmbeddedResources() {
    // The resource scripts are registered by a static initialiser of their own, whose order
    // against this one is not defined; registering twice is harmless.
    Q_INIT_RESOURCE(tessaly_sms_scripts);
}

struct SmsApplication {
    SmsApplication() {
        initEmbeddedResources();
        tessaly::sms::startModule(nullptr);
    }
};

const SmsApplication application;

} // namespace
