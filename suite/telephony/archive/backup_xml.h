#pragma once

#include "suite/telephony/archive/archive_format.h"

namespace tessaly::telephony::archive {

std::unique_ptr<MessageReader> makeBackupXmlReader(QIODevice& device);
std::unique_ptr<MessageWriter> makeBackupXmlWriter(QIODevice& device);

} // namespace tessaly::telephony::archive
