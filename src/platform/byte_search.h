#pragma once

#include <QByteArrayView>

namespace sorvanta {

/// Where `wanted` begins in `text` for the first time at or behind `from`, or -1. It looks at many bytes at once, so
/// that a wanted text of a few bytes that is rare costs little more than reading `text`; QByteArrayView::indexOf() and
/// memmem() look at the bytes one by one then. Any thread.
/// @param wanted one byte or more
/// @param from from 0 up to the size of `text`
qsizetype indexOfBytes(QByteArrayView text, QByteArrayView wanted, qsizetype from);

} // namespace sorvanta
