#include "core/audio_preparer.h"
#include "platform/error.h"

#include "support/media_files.h"
#include "support/printing.h"

#include <QFile>

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace sorvanta;

namespace {

constexpr off_t never = -1;
/// Behind this place no file of the media can be read; what is read in small pieces is not looked at.
std::atomic<off_t> lastReadable = never;
std::atomic<int> threadsLeft = -1; ///< below zero there is no end of them

} // namespace

extern "C" ssize_t read(int file, void *buffer, size_t size)
{
    constexpr size_t small = 65536;
    if (lastReadable != never && size > small && lseek(file, 0, SEEK_CUR) >= lastReadable) {
        errno = EIO;
        return -1;
    }
    return syscall(SYS_read, file, buffer, size);
}

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*work)(void *),
                              void *argument) noexcept
{
    if (threadsLeft == 0)
        return EAGAIN;
    if (threadsLeft > 0)
        --threadsLeft;
    static const auto create = reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));
    return create(thread, attributes, work, argument);
}

namespace {

/// What the three conversions make of a file, told in one line.
QString outcomes(const QString &path, int threads = -1)
{
    const AudioPreparer preparer{TemporaryFiles()};
    threadsLeft = threads;
    QString told = preparer.convertToWav(path, u"test"_qs) ? u"wav, "_qs : u"none, "_qs;
    threadsLeft = threads;
    told += preparer.exportToM4A(path) ? u"m4a, "_qs : u"none, "_qs;
    threadsLeft = threads;
    try {
        told += QFile::exists(preparer.convertForMeeting(path)) ? u"meeting"_qs : u"nothing"_qs;
    } catch (const Error &failure) {
        told += failure.domain() + u' ' + QString::number(failure.code()) + u' ' + failure.localizedDescription();
    }
    threadsLeft = -1;
    return told;
}

TEST(AFileThatCannotBeReadOn, isEnoughForAMeetingOnly)
{
    MediaFolder folder;
    const QString source = folder.make(u"a.mp4"_qs, u"-f lavfi -i sine=duration=60 -c:a pcm_s16le -f wav"_qs);
    EXPECT_EQ(outcomes(source), u"wav, m4a, meeting"_qs);
    lastReadable = 2'000'000;
    EXPECT_EQ(outcomes(source), u"none, none, meeting"_qs);
    lastReadable = never;
}

TEST(ASystemWithoutThreads, isAFailureLikeAnyOther)
{
    MediaFolder folder;
    const QString source = folder.make(u"a.mp4"_qs, u"-f lavfi -i sine=duration=1 -c:a pcm_s16le -f wav"_qs);
    EXPECT_EQ(outcomes(source, 0), u"none, none, MeetingRecorder 202 Cannot read audio for conversion."_qs)
        << "none to decode";
    EXPECT_EQ(outcomes(source, 1), u"none, none, NSPOSIXErrorDomain 11 The system could not start a thread."_qs)
        << "none to copy";
}

} // namespace
