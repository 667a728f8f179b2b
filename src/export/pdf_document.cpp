#include "export/pdf_document.h"

#include "export/document_text.h"

#include <algorithm>
#include <memory>

#include <cairo-pdf.h>
#include <hb-ot.h>
#include <pango/pangocairo.h>

namespace sorvanta {

namespace {

// In points.
constexpr double pageWidth = 612;
constexpr double pageHeight = 792;
constexpr double margin = 54;

constexpr char fontName[] = "SF Pro Text, Inter, Noto Sans, sans-serif 12";

/// A paragraph is laid out in pieces of so many bytes of UTF-8, since the time for one piece grows faster than the
/// piece.
constexpr qsizetype pieceSize = 512;

template<auto release>
struct Release {
    template<typename Resource>
    void operator()(Resource *resource) const
    {
        release(resource);
    }
};

template<typename Resource>
using Shared = std::unique_ptr<Resource, Release<g_object_unref>>;

double points(int pangoUnits)
{
    return static_cast<double>(pangoUnits) / PANGO_SCALE;
}

/// Whether a font draws in colours, which come into a PDF as pictures without text.
bool drawsPictures(PangoFont *font)
{
    hb_face_t *face = hb_font_get_face(pango_font_get_hb_font(font));
    return hb_ot_color_has_png(face) || hb_ot_color_has_layers(face) || hb_ot_color_has_svg(face);
}

/// The end of a piece of `text` that begins at `start`: at a border of characters.
qsizetype pieceEnd(const QByteArray &text, qsizetype start)
{
    qsizetype end = std::min(start + pieceSize, text.size());
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return end;
}

/// Sets paragraphs one below the other on pages.
class PdfWriter {
public:
    PdfWriter()
        : m_surface(cairo_pdf_surface_create_for_stream(append, &m_bytes, pageWidth, pageHeight))
        , m_page(cairo_create(m_surface.get()))
        , m_layout(pango_cairo_create_layout(m_page.get()))
    {
        // The moment of making would make two files of one text differ.
        cairo_pdf_surface_set_metadata(m_surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
        const std::unique_ptr<PangoFontDescription, Release<pango_font_description_free>> description(
            pango_font_description_from_string(fontName));
        PangoContext *context = pango_layout_get_context(m_layout.get());
        // Glyphs stand where the font has them, not on the pixels of a screen.
        const std::unique_ptr<cairo_font_options_t, Release<cairo_font_options_destroy>> options(
            cairo_font_options_create());
        cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
        cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
        pango_cairo_context_set_font_options(context, options.get());
        pango_context_set_round_glyph_positions(context, FALSE);
        m_plainFont.reset(pango_context_load_font(context, description.get()));
        pango_layout_set_font_description(m_layout.get(), description.get());
        pango_layout_set_width(m_layout.get(), static_cast<int>((pageWidth - 2 * margin) * PANGO_SCALE));
        pango_layout_set_wrap(m_layout.get(), PANGO_WRAP_WORD_CHAR);
        pango_layout_set_auto_dir(m_layout.get(), FALSE);
    }

    void addParagraph(const QString &paragraph)
    {
        PangoContext *context = pango_layout_get_context(m_layout.get());
        const bool isRightToLeft = paragraph.isRightToLeft();
        pango_context_set_base_dir(context, isRightToLeft ? PANGO_DIRECTION_RTL : PANGO_DIRECTION_LTR);
        pango_layout_set_alignment(m_layout.get(), isRightToLeft ? PANGO_ALIGN_RIGHT : PANGO_ALIGN_LEFT);
        const QByteArray text = paragraph.toUtf8();
        qsizetype start = 0;
        do {
            const qsizetype end = pieceEnd(text, start);
            start += addPiece(QByteArrayView(text).sliced(start, end - start), end == text.size());
        } while (start < text.size());
    }

    QByteArray document()
    {
        cairo_show_page(m_page.get());
        cairo_surface_finish(m_surface.get());
        return m_bytes;
    }

private:
    static cairo_status_t append(void *bytes, const unsigned char *data, unsigned int size)
    {
        static_cast<QByteArray *>(bytes)->append(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
        return CAIRO_STATUS_SUCCESS;
    }

    /// @return how many bytes were set: all of the last piece of a paragraph; of others the last line is left, since
    /// what follows may change it
    qsizetype addPiece(QByteArrayView piece, bool isLast)
    {
        pango_layout_set_text(m_layout.get(), piece.data(), static_cast<int>(piece.size()));
        const std::unique_ptr<PangoLayoutIter, Release<pango_layout_iter_free>> iterator(
            pango_layout_get_iter(m_layout.get()));
        do {
            PangoLayoutLine *line = pango_layout_iter_get_line_readonly(iterator.get());
            if (!isLast && line->start_index > 0 && pango_layout_iter_at_last_line(iterator.get()))
                return line->start_index;
            PangoRectangle place;
            pango_layout_iter_get_line_extents(iterator.get(), nullptr, &place);
            addLine(line, place, pango_layout_iter_get_baseline(iterator.get()));
        } while (pango_layout_iter_next_line(iterator.get()));
        return piece.size();
    }

    void addLine(PangoLayoutLine *line, const PangoRectangle &place, int baseline)
    {
        if (m_top + points(place.height) > pageHeight - margin && m_top > margin) {
            cairo_show_page(m_page.get());
            m_top = margin;
        }
        const double left = margin + points(place.x);
        const double lineBase = m_top + points(baseline - place.y);
        addTextOfPictures(line, left, lineBase);
        cairo_move_to(m_page.get(), left, lineBase);
        pango_cairo_show_layout_line(m_page.get(), line);
        m_top += points(place.height);
    }

    /// Lays under each picture a point, white on white, that stands for its characters. A blank would leave no trace.
    void addTextOfPictures(PangoLayoutLine *line, double left, double lineBase)
    {
        for (GSList *item = line->runs; item; item = item->next) {
            auto *run = static_cast<PangoGlyphItem *>(item->data);
            if (drawsPictures(run->item->analysis.font))
                addTextOfPictures(run, left, lineBase);
            left += points(pango_glyph_string_get_width(run->glyphs));
        }
    }

    void addTextOfPictures(PangoGlyphItem *run, double left, double lineBase)
    {
        const char *text = pango_layout_get_text(m_layout.get());
        cairo_set_scaled_font(m_page.get(), pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(m_plainFont.get())));
        cairo_set_source_rgb(m_page.get(), 1, 1, 1);
        hb_codepoint_t point = 0;
        hb_font_get_nominal_glyph(pango_font_get_hb_font(m_plainFont.get()), U'.', &point);
        PangoGlyphItemIter cluster;
        for (gboolean has = pango_glyph_item_iter_init_start(&cluster, run, text); has;
             has = pango_glyph_item_iter_next_cluster(&cluster)) {
            double x = left;
            for (int i = 0; i < std::min(cluster.start_glyph, cluster.end_glyph + 1); ++i)
                x += points(run->glyphs->glyphs[i].geometry.width);
            const cairo_glyph_t glyph{point, x, lineBase};
            const int size = cluster.end_index - cluster.start_index;
            const cairo_text_cluster_t characters{size, 1};
            cairo_show_text_glyphs(m_page.get(), text + cluster.start_index, size, &glyph, 1, &characters, 1, {});
        }
        cairo_set_source_rgb(m_page.get(), 0, 0, 0);
    }

    QByteArray m_bytes;
    std::unique_ptr<cairo_surface_t, Release<cairo_surface_destroy>> m_surface;
    std::unique_ptr<cairo_t, Release<cairo_destroy>> m_page;
    Shared<PangoLayout> m_layout;
    Shared<PangoFont> m_plainFont;
    double m_top = margin;
};

} // namespace

QByteArray renderPdf(const QString &text)
{
    PdfWriter writer;
    for (const QString &paragraph : documentParagraphs(text))
        writer.addParagraph(paragraph);
    return writer.document();
}

} // namespace sorvanta
