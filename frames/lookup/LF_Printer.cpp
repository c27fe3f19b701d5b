#include "frames/lookup/LF_Printer.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace frames {

TPrinter_LF::TPrinter_LF(QWidget* parent) : TItemList_LF(parent, "cbPrinter"), cbPrinter(itemsCombo()) {}

QStringList TPrinter_LF::SystemPrinters(QString* systemDefault, int timeoutMs) {
    QStringList printers;
    QString def;
    const QString lpstat = QStandardPaths::findExecutable("lpstat");
    if (!lpstat.isEmpty()) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("LC_ALL", "C"); // the answers are parsed: keep them untranslated
        p.setProcessEnvironment(env);
        p.start(lpstat, {"-d", "-a"});
        if (p.waitForStarted(timeoutMs) && !p.waitForFinished(timeoutMs)) {
            p.kill();
            p.waitForFinished(1000);
        }
        const QString out = QString::fromLocal8Bit(p.readAllStandardOutput());
        static const QRegularExpression defaultLine("^system default destination:\\s*(\\S+)");
        static const QRegularExpression queueLine("^(\\S+)\\s+(not\\s+)?accepting\\b");
        for (const QString& line : out.split('\n', Qt::SkipEmptyParts)) {
            if (auto m = defaultLine.match(line); m.hasMatch())
                def = m.captured(1);
            else if (auto q = queueLine.match(line); q.hasMatch() && !printers.contains(q.captured(1)))
                printers << q.captured(1);
        }
        if (!def.isEmpty() && !printers.contains(def)) printers.prepend(def);
    }
    if (systemDefault) *systemDefault = def;
    return printers;
}

QList<TItemList_LF::Item> TPrinter_LF::ListItems() {
    QStringList printers;
    SystemDefault.clear();
    const QString configured = TYConfig()->GetStringValue("Printers");
    for (const QString& name : configured.split(';', Qt::SkipEmptyParts))
        if (!name.trimmed().isEmpty()) printers << name.trimmed();
    if (printers.isEmpty()) printers = SystemPrinters(&SystemDefault);
    EmptyText = SystemDefault.isEmpty()
                    ? QStringLiteral("<Принтер по умолчанию системы>")
                    : QStringLiteral("<Принтер по умолчанию системы: %1>").arg(SystemDefault);
    QList<Item> items;
    for (const QString& name : printers) items.append({name, name});
    return items;
}

QString TPrinter_LF::UnlistedText(const QVariant& value) const {
    return QStringLiteral("%1 (недоступен)").arg(value.toString());
}

void TPrinter_LF::ItemsKeyDown(int& key, Qt::KeyboardModifiers shift) {
    cbPrinterKeyDown(key, shift);
}

void TPrinter_LF::cbPrinterKeyDown(int& key, Qt::KeyboardModifiers shift) {
    if (key == Qt::Key_F5 && !(shift & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier))) {
        key = 0;
        FillItems();
        return;
    }
    TItemList_LF::ItemsKeyDown(key, shift);
}

FRAMES_REGISTER(TPrinter_LF, "lookup");

} // namespace frames
