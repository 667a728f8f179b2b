#include "app/style/symbols.h"

#include <QHash>

namespace sorvanta {

namespace {

const QHash<QString, QString> &drawings()
{
    static const QHash<QString, QString> table{
        {"arrow.clockwise", "rotate-cw"},
        {"arrow.up.doc", "file-up"},
        {"arrow.up.left.and.arrow.down.right", "maximize-2"},
        {"captions.bubble", "captions"},
        {"check", "check"},
        {"checkmark.circle.fill", "circle-check"},
        {"chevron.down", "chevron-down"},
        {"chevron.left.forwardslash.chevron.right", "code-xml"},
        {"chevron.up", "chevron-up"},
        {"clock", "clock"},
        {"cpu", "cpu"},
        {"curlybraces", "braces"},
        {"doc.on.doc", "copy"},
        {"doc.plaintext", "file-type"},
        {"doc.richtext", "file-pen-line"},
        {"doc.richtext.fill", "file-image"},
        {"doc.text", "file-text"},
        {"doc.text.magnifyingglass", "file-search"},
        {"exclamationmark.triangle", "triangle-alert"},
        {"exclamationmark.triangle.fill", "triangle-alert"},
        {"globe", "globe"},
        {"icloud.and.arrow.down", "cloud-download"},
        {"mark", "audio-lines"},
        {"mic", "mic"},
        {"network", "network"},
        {"pause.circle", "circle-pause"},
        {"pause.fill", "pause-filled"},
        {"person.2.wave.2.fill", "users-round"},
        {"picker", "chevrons-up-down"},
        {"play.circle", "circle-play"},
        {"play.fill", "play-filled"},
        {"questionmark.circle", "circle-question-mark"},
        {"record.circle.fill", "circle-dot-filled"},
        {"search", "search"},
        {"shield.checkerboard", "shield-check"},
        {"square.and.arrow.down", "download"},
        {"square.and.arrow.up", "share"},
        {"stop.circle.fill", "circle-stop-filled"},
        {"submenu", "chevron-right"},
        {"tablecells", "table"},
        {"text.badge.plus", "list-plus"},
        {"trash", "trash"},
        {"tray.full", "inbox"},
        {"waveform.badge.mic", "mic-audio-lines"},
        {"xmark", "x"},
    };
    return table;
}

} // namespace

QString symbolFile(const QString &symbol)
{
    const auto drawing = drawings().constFind(symbol);
    return drawing == drawings().cend() ? QString() : QStringLiteral(":/sorvanta/icons/%1.svg").arg(*drawing);
}

QStringList symbolNames()
{
    return drawings().keys();
}

} // namespace sorvanta
