#pragma once
// The last resort for the length of a damaged file: a real decoder run. The
// tag engine only asks; a platform adapter answers.
#include <QString>
#include <optional>

namespace sonorit {

class DurationProbe {
public:
    virtual ~DurationProbe() = default;
    // The decoder's duration of the file in seconds; nothing when the file
    // cannot be decoded or the decoder knows no length. Never throws.
    virtual std::optional<double> durationSeconds(const QString& path) = 0;
};

}  // namespace sonorit
