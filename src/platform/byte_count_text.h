#pragma once

#include <QString>

namespace sorvanta {

/// A count of bytes for the eye, in megabytes with up to one decimal or in gigabytes with up to two: "77.7 MB",
/// "3.1 GB". The units are decimal (1 MB = 1,000,000 bytes); a comma groups thousands; zeros at the end of the
/// decimals are left out; ties go to the even digit. Gigabytes begin where megabytes would be shown as "1,000 MB". As
/// with the platform's figures of files, nothing at all is "Zero KB".
QString byteCountText(qint64 bytes);

} // namespace sorvanta
