#pragma once
#include <QImage>
#include <QString>

class QWidget;

namespace frames {

// Prints a picture on one page, fitted to the printable area (aspect kept) and placed at its top
// left, under the title. With pdfFile set the page goes to that PDF file without asking;
// otherwise the print dialog asks for the printer first. False when the user cancelled or the
// printer refused the job.
bool printPicture(const QImage& picture, const QString& title, QWidget* parent, const QString& pdfFile = {});

} // namespace frames
