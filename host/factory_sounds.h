#pragma once

// The suite's own sounds: a few short tones made here, written as WAV files into the sounds
// folder the first time the phone starts. "Notify" is the sound the telephony library plays
// for a new message until the person chooses another.

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tessaly::host {

// The names of the sounds, without ".wav".
QStringList factorySoundNames();

// One sound as a WAV file (16-bit mono PCM); empty for an unknown name.
QByteArray factorySoundWave(const QString& name);

// Creates the folder with every factory sound when it does not exist yet and returns the names
// written. An existing folder is left as it is, so a sound the person removed stays removed.
// A folder that cannot be created or a file that cannot be written is left out quietly: the
// phone works without sounds.
QStringList installFactorySounds(const QString& folder);

} // namespace tessaly::host
