#include "models/download_text.h"

#include "platform/byte_count_text.h"
#include "platform/number_text.h"

namespace sorvanta {

namespace {

bool isSizeKnown(const DownloadState &state)
{
    return state.totalBytesExpected >= 1;
}

} // namespace

QString percentLine(const DownloadState &state)
{
    const qint64 percent = isSizeKnown(state) ? state.bytesReceived * 100 / state.totalBytesExpected : 0;
    return u"Downloading %1%"_qs.arg(percent);
}

QString byteLine(const DownloadState &state)
{
    const QString received = byteCountText(state.bytesReceived);
    if (!isSizeKnown(state))
        return received + u" downloaded"_qs;
    const QString figures = received + u" / "_qs + byteCountText(state.totalBytesExpected);
    if (!state.estimatedSecondsRemaining)
        return figures;
    return figures + u" • ~"_qs + timeText(*state.estimatedSecondsRemaining) + u" left"_qs;
}

QString timeText(double seconds)
{
    const qint64 whole = roundedSeconds(seconds);
    if (whole < 60)
        return QString::number(whole) + u's';
    return u"%1m %2s"_qs.arg(whole / 60).arg(whole % 60);
}

} // namespace sorvanta
