// The one unit that uses Qt's print support (linked into the library on its own, see
// frames/CMakeLists.txt).
#include "frames/media/ImagePrint.h"
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

namespace frames {

bool printPicture(const QImage& picture, const QString& title, QWidget* parent, const QString& pdfFile) {
    if (picture.isNull()) return false;
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageMargins(QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
    printer.setDocName(title);
    if (!pdfFile.isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdfFile);
    } else {
        QPrintDialog dialog(&printer, parent);
        dialog.setWindowTitle(QStringLiteral("Печать"));
        if (dialog.exec() != QDialog::Accepted) return false;
    }
    QPainter p;
    if (!p.begin(&printer)) return false;
    const QRect page = p.viewport();
    const QSize size = picture.size().scaled(page.size(), Qt::KeepAspectRatio);
    p.drawImage(QRect(page.topLeft(), size), picture);
    return p.end();
}

} // namespace frames
