#include "mp3_maker.h"

#include <QFile>
#include <cmath>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include <vector>

#include <lame/lame.h>

namespace sonorit::test {

bool Mp3Recipe::operator<(const Mp3Recipe& o) const
{
    return std::tie(seconds, sampleRate, channels, bitrateKbps, vbr, vbrQuality, writeXing, toneHz)
        < std::tie(o.seconds, o.sampleRate, o.channels, o.bitrateKbps, o.vbr, o.vbrQuality, o.writeXing, o.toneHz);
}

namespace {

using Lame = std::unique_ptr<lame_global_flags, decltype(&lame_close)>;

Lame configuredEncoder(const Mp3Recipe& recipe)
{
    Lame gf(lame_init(), &lame_close);
    if (!gf)
        return gf;
    lame_set_num_channels(gf.get(), recipe.channels);
    lame_set_mode(gf.get(), recipe.channels == 1 ? MONO : JOINT_STEREO);
    lame_set_in_samplerate(gf.get(), recipe.sampleRate);
    // Without this LAME resamples low-quality VBR to 32 kHz on its own.
    lame_set_out_samplerate(gf.get(), recipe.sampleRate);
    lame_set_quality(gf.get(), 7);  // speed over fidelity: tests hear nothing
    lame_set_write_id3tag_automatic(gf.get(), 0);
    lame_set_bWriteVbrTag(gf.get(), recipe.writeXing ? 1 : 0);
    if (recipe.vbr) {
        lame_set_VBR(gf.get(), vbr_default);
        lame_set_VBR_quality(gf.get(), static_cast<float>(recipe.vbrQuality));
        lame_set_VBR_max_bitrate_kbps(gf.get(), recipe.bitrateKbps);
    } else {
        lame_set_VBR(gf.get(), vbr_off);
        lame_set_brate(gf.get(), recipe.bitrateKbps);
    }
    if (lame_init_params(gf.get()) < 0)
        gf.reset();
    return gf;
}

QByteArray encode(const Mp3Recipe& recipe)
{
    Lame gf = configuredEncoder(recipe);
    if (!gf)
        return {};
    const int samples = static_cast<int>(std::lround(recipe.seconds * recipe.sampleRate));
    std::vector<short> tone(static_cast<size_t>(samples));
    for (int i = 0; i < samples; ++i)
        tone[i] = static_cast<short>(8000 * std::sin(2 * M_PI * recipe.toneHz * i / recipe.sampleRate));

    QByteArray out;
    std::vector<unsigned char> buffer(static_cast<size_t>(1.25 * samples + 7200));
    // The same samples feed both channels; in mono LAME reads the left only.
    const int n = lame_encode_buffer(gf.get(), tone.data(), tone.data(), samples, buffer.data(),
                                     static_cast<int>(buffer.size()));
    if (n < 0)
        return {};
    out.append(reinterpret_cast<const char*>(buffer.data()), n);
    const int tail = lame_encode_flush(gf.get(), buffer.data(), static_cast<int>(buffer.size()));
    if (tail < 0)
        return {};
    out.append(reinterpret_cast<const char*>(buffer.data()), tail);

    if (recipe.writeXing) {
        // LAME reserved the first frame; its final content is known only now.
        // Frames too small to hold the header get none (size 0).
        const size_t size = lame_get_lametag_frame(gf.get(), buffer.data(), buffer.size());
        if (size > static_cast<size_t>(out.size()))
            return {};
        if (size > 0)
                out.replace(qsizetype(0), static_cast<qsizetype>(size), reinterpret_cast<const char*>(buffer.data()),
                        static_cast<qsizetype>(size));
    }
    return out;
}

}  // namespace

QByteArray makeMp3(const Mp3Recipe& recipe)
{
    static std::mutex lock;
    static std::map<Mp3Recipe, QByteArray> cache;
    std::lock_guard<std::mutex> guard(lock);
    auto it = cache.find(recipe);
    if (it == cache.end())
        it = cache.emplace(recipe, encode(recipe)).first;
    return it->second;
}

bool writeMp3(const QString& path, const Mp3Recipe& recipe)
{
    const QByteArray bytes = makeMp3(recipe);
    QFile f(path);
    return !bytes.isEmpty() && f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

}  // namespace sonorit::test
