#pragma once
// Windows Media Audio files for tests, encoded by GStreamer's libav set.
#include <QString>

namespace sonorit::test {

// False when this machine has no WMA encoder or the file was not written.
bool writeWma(const QString& path, double seconds);

}  // namespace sonorit::test
