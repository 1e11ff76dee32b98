#include "gst_duration_probe.h"

#include <QFile>
#include <memory>
#include <mutex>

#include <gst/gst.h>

namespace sonorit {

namespace {
struct ElementUnref {
    void operator()(GstElement* e) const
    {
        gst_element_set_state(e, GST_STATE_NULL);
        gst_object_unref(e);
    }
};
using Pipeline = std::unique_ptr<GstElement, ElementUnref>;
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
        // A plain file source: a URI would make GStreamer load every plugin
        // that offers some protocol just to find the one for "file".
        GError* error = nullptr;
        Pipeline pipeline(gst_parse_launch("filesrc name=source ! decodebin ! fakesink sync=false", &error));
        g_clear_error(&error);
        if (!pipeline)
            return std::nullopt;
        GstElement* source = gst_bin_get_by_name(GST_BIN(pipeline.get()), "source");
        if (!source)
            return std::nullopt;
        g_object_set(source, "location", QFile::encodeName(path).constData(), nullptr);
        gst_object_unref(source);

        // Run, not just prerolled: a file without a length header tells its
        // length only when the parser has seen enough of it, at the latest at
        // its end. Without a clock the run is as fast as the decoder.
        if (gst_element_set_state(pipeline.get(), GST_STATE_PLAYING) == GST_STATE_CHANGE_FAILURE)
            return std::nullopt;
        std::unique_ptr<GstBus, decltype(&gst_object_unref)> bus(gst_element_get_bus(pipeline.get()),
                                                                  &gst_object_unref);
        const gint64 deadline = g_get_monotonic_time() + gint64(timeoutSeconds_) * G_USEC_PER_SEC;
        const auto flags = GstMessageType(GST_MESSAGE_ERROR | GST_MESSAGE_EOS | GST_MESSAGE_ASYNC_DONE
                                          | GST_MESSAGE_DURATION_CHANGED);
        for (gint64 left; (left = deadline - g_get_monotonic_time()) > 0;) {
            GstMessage* message = gst_bus_timed_pop_filtered(bus.get(), GstClockTime(left) * GST_USECOND, flags);
            if (!message)
                break;
            const GstMessageType type = GST_MESSAGE_TYPE(message);
            gst_message_unref(message);
            if (type == GST_MESSAGE_ERROR)
                break;
            gint64 nanoseconds = 0;
            if (gst_element_query_duration(pipeline.get(), GST_FORMAT_TIME, &nanoseconds) && nanoseconds > 0)
                return static_cast<double>(nanoseconds) / GST_SECOND;
            // At the end the position is the length, asked or not.
            if (type == GST_MESSAGE_EOS) {
                if (gst_element_query_position(pipeline.get(), GST_FORMAT_TIME, &nanoseconds) && nanoseconds > 0)
                    return static_cast<double>(nanoseconds) / GST_SECOND;
                break;
            }
        }
        return std::nullopt;
    } catch (...) {
        return std::nullopt;
    }
}

}  // namespace sonorit
