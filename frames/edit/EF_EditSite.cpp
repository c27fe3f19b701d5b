#include "frames/edit/EF_EditSite.h"
#include "frames/core/Registry.h"

namespace frames {

bool TEditSite_Frame::IsSite(const QString& text) {
    if (text.isEmpty()) return false;
    for (const QChar c : text)
        if (c.isSpace()) return false;
    const qsizetype dot = text.indexOf('.');
    return dot > 0 && dot < text.size() - 1;
}

QString TEditSite_Frame::Address(const QString& text) {
    const QString lower = text.toLower();
    if (lower.contains("http://") || lower.contains("https://")) return text;
    return "http://" + text;
}

FRAMES_REGISTER(TEditSite_Frame, "edit");

} // namespace frames
