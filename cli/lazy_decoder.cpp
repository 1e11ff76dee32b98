// The decoder probe as sonorit-cli has it: the GStreamer adapter lives in the
// module "sonorit-cli-decoder.so" beside the program and is loaded at the
// first file that needs it (see decoder_module.cpp).
#include <dlfcn.h>

#include <QFile>
#include <QFileInfo>

#include "platform/gstreamer/gst_duration_probe.h"

namespace sonorit {

namespace {
using DurationFn = bool (*)(const char*, int, double*);

DurationFn loadDecoder()
{
    static const DurationFn fn = [] {
        const QString folder = QFileInfo(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath()).path();
        void* module = dlopen(QFile::encodeName(folder + QStringLiteral("/sonorit-cli-decoder.so")).constData(),
                              RTLD_NOW | RTLD_LOCAL);
        return module ? reinterpret_cast<DurationFn>(dlsym(module, "sonorit_decoder_duration")) : nullptr;
    }();
    return fn;
}
}  // namespace

std::optional<double> GstDurationProbe::durationSeconds(const QString& path)
{
    const DurationFn fn = loadDecoder();
    double seconds = 0;
    if (!fn || !fn(path.toUtf8().constData(), timeoutSeconds_, &seconds))
        return std::nullopt;
    return seconds;
}

}  // namespace sonorit
