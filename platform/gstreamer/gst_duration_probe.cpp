#include "gst_duration_probe.h"

#include <QFile>
#include <memory>
#include <mutex>

#include <gst/gst.h>
#include <gst/pbutils/pbutils.h>

namespace sonorit {

namespace {
template <typename T>
struct GObjectUnref {
    void operator()(T* p) const { g_object_unref(p); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref<T>>;
}  // namespace

bool ensureGstreamer()
{
    static std::once_flag once;
    static bool ready = false;
    std::call_once(once, [] {
        GError* error = nullptr;
        ready = gst_init_check(nullptr, nullptr, &error);
        g_clear_error(&error);
    });
    return ready;
}

std::optional<double> GstDurationProbe::durationSeconds(const QString& path)
{
    try {
        if (!ensureGstreamer() || !QFile::exists(path))
            return std::nullopt;
        GError* error = nullptr;
        gchar* uri = gst_filename_to_uri(QFile::encodeName(path).constData(), &error);
        g_clear_error(&error);
        if (!uri)
            return std::nullopt;
        std::unique_ptr<gchar, decltype(&g_free)> uriOwner(uri, &g_free);

        GObjectPtr<GstDiscoverer> discoverer(
            gst_discoverer_new(static_cast<GstClockTime>(timeoutSeconds_) * GST_SECOND, &error));
        g_clear_error(&error);
        if (!discoverer)
            return std::nullopt;
        GObjectPtr<GstDiscovererInfo> info(gst_discoverer_discover_uri(discoverer.get(), uri, &error));
        g_clear_error(&error);
        if (!info || gst_discoverer_info_get_result(info.get()) != GST_DISCOVERER_OK)
            return std::nullopt;
        const GstClockTime duration = gst_discoverer_info_get_duration(info.get());
        if (!GST_CLOCK_TIME_IS_VALID(duration) || duration == 0)
            return std::nullopt;
        return static_cast<double>(duration) / GST_SECOND;
    } catch (...) {
        return std::nullopt;
    }
}

}  // namespace sonorit
