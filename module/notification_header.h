#pragma once

// The drawn headers of the notification windows: a band with a small picture and the window's
// header word ("message", "sending", "database"), painted at run time (no image files). The
// SIM transfer header moves with each frame; the sending header carries a gauge of the run.

#include <QPixmap>
#include <QSize>
#include <QString>

namespace tessaly::sms {

enum class HeaderPicture {
    Message,  // an envelope
    Sending,  // an envelope leaving
    Database, // messages moving from the SIM card into the phone
};

// progress: 0..1 draws a gauge along the lower edge; below 0 draws none.
QPixmap notificationHeader(QSize size, HeaderPicture picture, const QString& word, int frame = 0,
                           double progress = -1.0);

} // namespace tessaly::sms
