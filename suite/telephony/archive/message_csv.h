#pragma once

// Messages as CSV (RFC 4180, UTF-8, CRLF): a header row, then one row per message with the
// columns folder, status, date (ISO 8601 with the offset), numbers (";" between several),
// service_centre, text.

#include "suite/telephony/archive/archive_format.h"

namespace tessaly::telephony::archive {

std::unique_ptr<MessageReader> makeCsvReader(QIODevice& device);
std::unique_ptr<MessageWriter> makeCsvWriter(QIODevice& device);

} // namespace tessaly::telephony::archive
