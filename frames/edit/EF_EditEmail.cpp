#include "frames/edit/EF_EditEmail.h"
#include "frames/core/Registry.h"

namespace frames {

bool TEditEmail_Frame::IsEmail(const QString& text) {
    const qsizetype at = text.indexOf('@');
    if (at <= 0) return false;
    const QString domain = text.mid(at + 1);
    if (domain.size() < 5 || !domain.contains('.')) return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool latin = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (!latin && c != '.' && c != '-' && c != '_' && c != '+' && i != at) return false;
    }
    return true;
}

FRAMES_REGISTER(TEditEmail_Frame, "edit");

} // namespace frames
