#include "gst_media_graph.h"

#include <QFile>
#include <algorithm>
#include <cmath>

#include <gst/gst.h>

#include "gst_duration_probe.h"

namespace sonorit {

namespace {

// playbin's flags: audio with its own volume stage. Without video and text
// no video sink is ever looked for, which keeps the start short and headless.
constexpr guint PlayFlagAudio = 1u << 1;
constexpr guint PlayFlagSoftVolume = 1u << 4;

// Longest wait for a file to preroll; a file that takes longer is not one
// the player can start.
constexpr GstClockTime PrerollTimeout = 5 * GST_SECOND;
// A flushing seek prerolls anew; short enough for a drag on the slider.
constexpr GstClockTime SeekSettleTimeout = 200 * GST_MSECOND;

GstElement* makeSink(const QString& sink)
{
    const QByteArray text = sink.isEmpty() ? QByteArray("autoaudiosink") : sink.toUtf8();
    GstElement* element = nullptr;
    if (sink.contains(QLatin1Char(' ')) || sink.contains(QLatin1Char('='))) {
        GError* error = nullptr;
        element = gst_parse_launch(text.constData(), &error);
        g_clear_error(&error);
        // A description of several elements is no sink.
        if (element && GST_IS_PIPELINE(element)) {
            gst_object_unref(element);
            return nullptr;
        }
    } else {
        element = gst_element_factory_make(text.constData(), nullptr);
        // A fake sink that does not wait for the clock would play a track in
        // a blink; the player's end-of-track poll needs real time.
        if (element && sink == QLatin1String("fakesink"))
            g_object_set(element, "sync", TRUE, nullptr);
    }
    return element ? GST_ELEMENT(gst_object_ref_sink(element)) : nullptr;
}

std::optional<GraphState> fromGst(GstState s)
{
    switch (s) {
    case GST_STATE_PLAYING:
        return GraphState::Running;
    case GST_STATE_PAUSED:
        return GraphState::Paused;
    case GST_STATE_READY:
    case GST_STATE_NULL:
        return GraphState::Stopped;
    default:
        return std::nullopt;
    }
}

}  // namespace

double linearVolume(int hundredthsDb)
{
    // playbin refuses gains above 10 (+20 dB).
    return std::clamp(std::pow(10.0, hundredthsDb / 2000.0), 0.0, 10.0);
}

GstMediaGraph::GstMediaGraph(const QString& sink)
{
    if (!ensureGstreamer())
        return;
    sink_ = makeSink(sink);
    if (!sink_)
        return;
    playbin_ = gst_element_factory_make("playbin", nullptr);
    if (!playbin_)
        return;
    gst_object_ref_sink(playbin_);
    g_object_set(playbin_, "flags", PlayFlagAudio | PlayFlagSoftVolume, nullptr);
    g_object_set(playbin_, "audio-sink", makeOutput(), nullptr);
}

// The balance sits right in front of the sink: playbin keeps about a second
// of audio queued behind its audio filter, and a slider that takes a second
// to be heard feels broken. "simple" only lowers the far side: a balance,
// not a moved image.
GstElement* GstMediaGraph::makeOutput()
{
    GstElement* convert = gst_element_factory_make("audioconvert", nullptr);
    GstElement* pan = gst_element_factory_make("audiopanorama", nullptr);
    if (!convert || !pan) {
        if (convert)
            gst_object_unref(gst_object_ref_sink(convert));
        if (pan)
            gst_object_unref(gst_object_ref_sink(pan));
        return sink_;  // plays centred
    }
    gst_util_set_object_arg(G_OBJECT(pan), "method", "simple");
    GstElement* bin = gst_bin_new(nullptr);
    gst_bin_add_many(GST_BIN(bin), convert, pan, sink_, nullptr);
    if (!gst_element_link_many(convert, pan, sink_, nullptr)) {
        gst_object_unref(gst_object_ref_sink(bin));
        return nullptr;
    }
    GstPad* target = gst_element_get_static_pad(convert, "sink");
    gst_element_add_pad(bin, gst_ghost_pad_new("sink", target));
    gst_object_unref(target);
    panorama_ = GST_ELEMENT(gst_object_ref(pan));
    return bin;
}

GstMediaGraph::~GstMediaGraph()
{
    if (playbin_) {
        gst_element_set_state(playbin_, GST_STATE_NULL);
        gst_object_unref(playbin_);
    }
    if (panorama_)
        gst_object_unref(panorama_);
    if (sink_)
        gst_object_unref(sink_);
}

bool GstMediaGraph::drainBus()
{
    if (!playbin_)
        return false;
    GstBus* bus = gst_element_get_bus(playbin_);
    if (!bus)
        return false;
    // Messages nobody takes would pile up for as long as the track plays.
    while (GstMessage* message = gst_bus_pop(bus)) {
        if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR)
            failed_ = true;
        gst_message_unref(message);
    }
    gst_object_unref(bus);
    return failed_;
}

bool GstMediaGraph::ready()
{
    return playbin_ && rendered_ && !drainBus();
}

bool GstMediaGraph::setState(int state)
{
    if (!ready())
        return false;
    return gst_element_set_state(playbin_, GstState(state)) != GST_STATE_CHANGE_FAILURE;
}

bool GstMediaGraph::renderFile(const QString& path)
{
    if (!playbin_ || rendered_ || !QFile::exists(path))
        return false;
    GError* error = nullptr;
    gchar* uri = gst_filename_to_uri(QFile::encodeName(path).constData(), &error);
    g_clear_error(&error);
    if (!uri)
        return false;
    g_object_set(playbin_, "uri", uri, nullptr);
    g_free(uri);
    rendered_ = true;

    // Prerolled, the decoders are built and the length is known; the first
    // buffer already waits in the sink, so run() starts at once.
    if (gst_element_set_state(playbin_, GST_STATE_PAUSED) == GST_STATE_CHANGE_FAILURE
        || gst_element_get_state(playbin_, nullptr, nullptr, PrerollTimeout) != GST_STATE_CHANGE_SUCCESS
        || drainBus()) {
        gst_element_set_state(playbin_, GST_STATE_NULL);
        failed_ = true;
        return false;
    }
    duration_ = duration();
    return true;
}

bool GstMediaGraph::run() { return setState(GST_STATE_PLAYING); }
bool GstMediaGraph::pause() { return setState(GST_STATE_PAUSED); }
// Ready, not paused: the file is let go, so the next copy may take its name.
bool GstMediaGraph::stop() { return setState(GST_STATE_READY); }

std::optional<GraphState> GstMediaGraph::state(int timeoutMs)
{
    if (!ready())
        return std::nullopt;
    GstState current = GST_STATE_VOID_PENDING;
    GstState pending = GST_STATE_VOID_PENDING;
    const GstStateChangeReturn r =
        gst_element_get_state(playbin_, &current, &pending, GstClockTime(std::max(timeoutMs, 0)) * GST_MSECOND);
    if (r == GST_STATE_CHANGE_FAILURE || drainBus())
        return std::nullopt;
    // A change still under way counts as done, as the player means it.
    if (r == GST_STATE_CHANGE_ASYNC && pending != GST_STATE_VOID_PENDING)
        return fromGst(pending);
    return fromGst(current);
}

// A graph that failed while it played (a file cut short under it, a
// decoder error) stands at its end, so that the player's once-a-second end
// test moves on to the next track.
std::optional<double> GstMediaGraph::duration()
{
    gint64 ns = 0;
    if (!ready())
        return failed_ && rendered_ ? duration_ : std::nullopt;
    if (!gst_element_query_duration(playbin_, GST_FORMAT_TIME, &ns) || ns < 0)
        return duration_;
    return double(ns) / GST_SECOND;
}

std::optional<double> GstMediaGraph::position()
{
    gint64 ns = 0;
    if (!ready())
        return failed_ && rendered_ ? duration_ : std::nullopt;
    if (!gst_element_query_position(playbin_, GST_FORMAT_TIME, &ns) || ns < 0)
        return std::nullopt;
    return double(ns) / GST_SECOND;
}

bool GstMediaGraph::setPosition(double seconds)
{
    if (!ready() || !std::isfinite(seconds))
        return false;
    const gint64 ns = gint64(std::max(seconds, 0.0) * GST_SECOND);
    if (!gst_element_seek_simple(playbin_, GST_FORMAT_TIME,
                                 GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE), ns))
        return false;
    // The position asked right after the seek is then the new one.
    gst_element_get_state(playbin_, nullptr, nullptr, SeekSettleTimeout);
    return true;
}

bool GstMediaGraph::setVolume(int hundredthsDb)
{
    if (!playbin_)
        return false;
    g_object_set(playbin_, "volume", linearVolume(hundredthsDb), nullptr);
    return true;
}

bool GstMediaGraph::setBalance(int balance)
{
    if (!panorama_)
        return false;
    const gfloat pan = gfloat(std::clamp(balance, -10000, 10000)) / 10000.0f;
    g_object_set(panorama_, "panorama", pan, nullptr);
    return true;
}

std::unique_ptr<MediaGraph> GstMediaGraphFactory::create()
{
    try {
        auto graph = std::make_unique<GstMediaGraph>(sink_);
        if (!graph->isUsable())
            return nullptr;
        return graph;
    } catch (...) {
        return nullptr;
    }
}

}  // namespace sonorit
