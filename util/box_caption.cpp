#include "util/box_caption.h"

#include "framework/resources/resources.h"
#include "resources/resource.h"

namespace tessaly::sms {

QString boxCaption() {
    return loadString(IDS_APP_TITLE);
}

} // namespace tessaly::sms
