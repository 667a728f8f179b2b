#include "platform/file_types.h"

namespace sorvanta {

namespace {

const QStringList &audioExtensions()
{
    static const QStringList extensions =
        u"wav wave bwf mp3 mpga mp2 m4a m4b m4p m4r aac adts ac3 eac3 ec3 aif aiff aifc cdda caf flac au snd "
        u"ul ulw ulaw amr loas latm mid midi kar smf dls sf2 sd2 w64 wma wax ra ram aa aax "
        u"ogg oga opus spx mka"_qs.split(u' ');
    return extensions;
}

const QStringList &movieExtensions()
{
    static const QStringList extensions =
        u"mov qt mp4 mpg4 m4v mpg mpeg mpe m15 m75 m2v ts mts m2ts dv dif avi vfw 3gp 3gpp sdv 3g2 3gp2 "
        u"flc fli cel webm wmv wm wmp wmx wvx flv f4v f4p f4a f4b rm rmvb mxf "
        u"mkv ogv ogm vob m2t divx"_qs.split(u' ');
    return extensions;
}

} // namespace

bool isAudioExtension(const QString &extension)
{
    return audioExtensions().contains(extension, Qt::CaseInsensitive);
}

bool isMovieExtension(const QString &extension)
{
    return movieExtensions().contains(extension, Qt::CaseInsensitive);
}

QStringList mediaExtensions()
{
    return audioExtensions() + movieExtensions();
}

} // namespace sorvanta
