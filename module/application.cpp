// The module's application object: constructed while the host's dlopen loads Sms.tsm, before
// any export can be called.

#include "module/startup.h"

#include <QtGlobal>

// Outside any namespace, as Q_INIT_RESOURCE requires. The resource scripts are registered by a
// static initialiser of their own, whose order against the application object is not defined;
// registering twice is harmless.
static void initEmbeddedResources() {
    Q_INIT_RESOURCE(tessaly_sms_scripts);
}

namespace {

struct SmsApplication {
    SmsApplication() {
        initEmbeddedResources();
        tessaly::sms::startModule();
    }
};

const SmsApplication application;

} // namespace
