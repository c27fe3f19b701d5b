#include "frames/core/Registry.h"
#include "frames/lookup/LF_DiscAlgCondition.h"
#include "frames/lookup/LF_EventPriority.h"
#include "frames/lookup/LF_ItemList.h"
#include "frames/lookup/LF_Measurement.h"
#include "frames/lookup/LF_Printer.h"
#include "platform/widgets/ColorSwatch.h"
#include "tests/lookup/BoundRecord.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace frames;

namespace {

using test::makeFrame;

class OwnLookup : public test::DbTest {
protected:
    // The image of the combo row showing text, as a 32-bit image.
    static QImage rowImage(TAbs_LF* f, const QString& text) {
        QComboBox* c = f->lcSelect->comboBox();
        const int row = c->findText(text);
        if (row < 0) return {};
        return c->itemIcon(row).pixmap(c->iconSize()).toImage().convertToFormat(QImage::Format_RGB32);
    }
    static void choose(QComboBox* c, const QString& text) {
        const int row = c->findText(text);
        ASSERT_GE(row, 0) << text.toStdString();
        c->setCurrentIndex(row);
        emit c->activated(row);
    }
};

} // namespace

TEST_F(OwnLookup, ColourRowsShowASwatchOfTheirColourAndPrioritiesAMarkPerLevel) {
    // The stored value is 0x00BBGGRR: red in the low byte.
    EXPECT_EQ(ui::colorFromBgr(255), QColor(255, 0, 0));
    EXPECT_EQ(ui::colorFromBgr(0xFF0000), QColor(0, 0, 255));
    EXPECT_EQ(ui::bgrFromColor(QColor(0x01, 0x79, 0x6F)), 7305473);

    QWidget top;
    TAbs_LF* colors = makeFrame("TColor_LF", &top);
    colors->Init();
    for (auto [name, rgb] : {std::pair{"Красный", qRgb(255, 0, 0)}, std::pair{"Синий", qRgb(0, 0, 255)},
                             std::pair{"ёлочный зелёный", qRgb(0x01, 0x79, 0x6F)}}) {
        const QImage img = rowImage(colors, name);
        ASSERT_FALSE(img.isNull()) << name;
        EXPECT_EQ(img.pixel(15, 6), rgb) << name;
        EXPECT_EQ(img.pixel(0, 0), qRgb(0x80, 0x80, 0x80)) << name; // the frame round the field
    }

    TAbs_LF* priorities = makeFrame("TEventPriority_LF", &top);
    priorities->Init();
    QList<QRgb> seen;
    for (auto [name, level] : {std::pair{"Низкий", 0}, std::pair{"Обычный", 1}, std::pair{"Высокий", 2},
                               std::pair{"Срочный", 3}, std::pair{"Критический", 4}}) {
        const QImage img = rowImage(priorities, name);
        ASSERT_FALSE(img.isNull()) << name;
        const QRgb badge = img.pixel(8, 13);
        EXPECT_EQ(badge, TEventPriority_LF::PriorityColor(level).rgb()) << name;
        EXPECT_TRUE(level == 4 || !seen.contains(badge)) << name; // the top two share a colour
        seen << badge;
        // One white bar more than the level, at most four.
        int bars = 0;
        for (int x = 4; x <= 10; x += 2) bars += img.pixel(x, 10) == qRgb(255, 255, 255);
        EXPECT_EQ(bars, qMin(level + 1, 4)) << name;
    }
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(OwnLookup, FixedItemFramesWriteTheChosenValueAndKeepAnUnlistedOne) {
    QWidget top;
    auto* pol = makeFrame<TPol_LF>("TPol_LF", &top);
    pol->Init();
    EXPECT_TRUE(pol->IsEmpty());
    int changes = 0;
    pol->lcSelect->OnChange = [&](QObject*) { ++changes; };
    choose(pol->rxcbPol, "Женский");
    EXPECT_EQ(pol->lcSelect->keyValue().toString(), QString("Ж"));
    EXPECT_EQ(changes, 1);
    QTest::keyClick(pol->rxcbPol, Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_FALSE(pol->IsEmpty());
    QTest::keyClick(pol->rxcbPol, Qt::Key_Delete);
    EXPECT_TRUE(pol->IsEmpty());
    EXPECT_EQ(pol->rxcbPol->currentIndex(), -1);
    EXPECT_EQ(changes, 2);

    // Bound to a record being edited: the choice goes into the record; a value the list does not
    // offer is shown as it stands and kept.
    test::BoundRecord h({"SEX"}, {"X"}, db::FieldType::Char, 1);
    h.record->edit();
    auto* bound = makeFrame<TPol_LF>("TPol_LF", h.dialog);
    bound->lcSelect->setDataField("SEX");
    bound->Init();
    EXPECT_EQ(bound->rxcbPol->currentText(), QString("X"));
    EXPECT_EQ(bound->rxcbPol->count(), 3);
    choose(bound->rxcbPol, "Мужской");
    EXPECT_EQ(h.record->fieldByName("SEX")->asString(), QString("М"));
    EXPECT_EQ(bound->rxcbPol->count(), 2); // the unlisted entry went with the value
    EXPECT_EQ(h.dialog->ChangeCount(), 1);

    // Read-only: neither the list nor Delete changes the value.
    bound->SetReadOnly(true);
    EXPECT_FALSE(bound->rxcbPol->isEnabled());
    QTest::keyClick(bound->rxcbPol, Qt::Key_Delete);
    EXPECT_EQ(h.record->fieldByName("SEX")->asString(), QString("М"));

    // Integer values: the display modes.
    auto* view = makeFrame<TPrView_LF>("TPrView_LF", &top);
    view->Init();
    choose(view->rxcbPrView, "Печать без просмотра");
    EXPECT_EQ(view->lcSelect->keyValue(), QVariant(1));
    view->lcSelect->setKeyValue(0);
    view->DataRefresh();
    EXPECT_EQ(view->rxcbPrView->currentText(), QString("Предварительный просмотр"));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(OwnLookup, PrintersComeFromTheConfigurationOrFromLpstat) {
    // A fake lpstat first in PATH answers as CUPS does.
    QTemporaryDir bin;
    ASSERT_TRUE(bin.isValid());
    QFile script(bin.filePath("lpstat"));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\n"
                 "echo \"system default destination: Kassa_Laser\"\n"
                 "echo \"Office_HP accepting requests since Mon 04 Mar 2024 09:00:00\"\n"
                 "echo \"Kassa_Laser accepting requests since Mon 04 Mar 2024 09:00:00\"\n"
                 "echo \"Sklad_Zebra not accepting requests since Tue 05 Mar 2024 10:00:00 -\"\n"
                 "echo \"\tpaper jam\"\n");
    script.close();
    script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray oldPath = qgetenv("PATH");
    qputenv("PATH", bin.path().toLocal8Bit() + ":" + oldPath);

    QWidget top;
    auto* f = makeFrame<TPrinter_LF>("TPrinter_LF", &top);
    f->Init();
    auto texts = [&] {
        QStringList t;
        for (int i = 0; i < f->cbPrinter->count(); ++i) t << f->cbPrinter->itemText(i);
        return t;
    };
    EXPECT_EQ(texts(), QStringList({"<Принтер по умолчанию системы: Kassa_Laser>", "Office_HP", "Kassa_Laser",
                                    "Sklad_Zebra"}));
    EXPECT_EQ(f->SystemDefault, QString("Kassa_Laser"));
    choose(f->cbPrinter, "Sklad_Zebra");
    EXPECT_EQ(f->lcSelect->keyValue().toString(), QString("Sklad_Zebra"));
    // Back to the system's default: the empty entry, or Delete.
    choose(f->cbPrinter, "<Принтер по умолчанию системы: Kassa_Laser>");
    EXPECT_TRUE(f->IsEmpty());

    // The configured list wins over the system's; a stored printer it lacks stays, marked.
    host->stringValues["Printers"] = "Склад; Бухгалтерия ;";
    f->lcSelect->setKeyValue("Office_HP");
    QTest::keyClick(f->cbPrinter, Qt::Key_F5);
    EXPECT_EQ(texts(), QStringList({"<Принтер по умолчанию системы>", "Склад", "Бухгалтерия",
                                    "Office_HP (недоступен)"}));
    EXPECT_EQ(f->cbPrinter->currentText(), QString("Office_HP (недоступен)"));
    QTest::keyClick(f->cbPrinter, Qt::Key_Delete);
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_EQ(f->cbPrinter->currentIndex(), 0);

    // Without lpstat and without a configured list there is only the system's default.
    qputenv("PATH", bin.path().toLocal8Bit() + "/none");
    host->stringValues.remove("Printers");
    QString def = "x";
    EXPECT_TRUE(TPrinter_LF::SystemPrinters(&def).isEmpty());
    EXPECT_TRUE(def.isEmpty());
    qputenv("PATH", oldPath);
}

TEST_F(OwnLookup, MeasurementUnitsLeaveOutPacksAndOnRequestWeightUnits) {
    QWidget top;
    auto* f = makeFrame<TMeasurement_LF>("TMeasurement_LF", &top);
    f->Init();
    const int units =
        scalar("select count(*) from Mesuriment where id_mesuriment>-1 and is_pack='F'").toInt();
    const int pieceUnits =
        scalar("select count(*) from Mesuriment where id_mesuriment>-1 and is_pack='F' and "
               "is_weight='F'")
            .toInt();
    ASSERT_GT(units, pieceUnits);
    EXPECT_EQ(f->pFIBDataSet1->recordCount(), units);
    f->SetWeight(false);
    EXPECT_EQ(f->pFIBDataSet1->recordCount(), pieceUnits);
    EXPECT_FALSE(f->pFIBDataSet1->locate("ID_MESURIMENT", 2)); // kilogram

    // The form learns whether weight units may be chosen; a unit the list lacks is refused.
    f->lcSelect->setKeyValue(1);
    host->scriptRunResult(1, 2);
    f->lcSelect->OnDlgClick(f->lcSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].params.Params->Find("WEIGHT")->Value.toInt(), 0);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 1);
    ASSERT_EQ(host->warnings().size(), 1);
    EXPECT_TRUE(host->warnings()[0].contains("Килограмм")) << host->warnings()[0].toStdString();
    host->scriptRunResult(1, 4);
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 4);
    EXPECT_EQ(host->warnings().size(), 1);
    // A pack is never a unit.
    f->SetWeight(true);
    host->scriptRunResult(1, 20);
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 4);
    EXPECT_EQ(host->warnings().size(), 2);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(OwnLookup, DiscountConditionsNotInUseAreMarkedAndRefused) {
    QWidget top;
    auto* f = makeFrame<TDiscAlgCondition_LF>("TDiscAlgCondition_LF", &top);
    f->Init();
    EXPECT_FALSE(rowImage(f, "Оплата банковской картой").isNull());
    EXPECT_TRUE(rowImage(f, "День недели").isNull());

    choose(f->lcSelect->comboBox(), "День недели");
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 4);
    choose(f->lcSelect->comboBox(), "Оплата банковской картой");
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 4);
    EXPECT_EQ(f->lcSelect->comboBox()->currentText(), QString("День недели"));
    ASSERT_EQ(host->warnings().size(), 1);
    EXPECT_EQ(host->warnings()[0],
              QString("Условие «Оплата банковской картой» не используется и не может быть выбрано."));

    // Bound to a record being edited: the record keeps its condition.
    test::BoundRecord h({"ALG_CONDITION"}, {2});
    h.record->edit();
    auto* bound = makeFrame<TDiscAlgCondition_LF>("TDiscAlgCondition_LF", h.dialog);
    bound->Init();
    choose(bound->lcSelect->comboBox(), "Оплата банковской картой");
    EXPECT_EQ(h.record->fieldByName("ALG_CONDITION")->asInteger(), 2);
    // A viewed record may still point at a condition that is not in use and shows it.
    test::BoundRecord v({"ALG_CONDITION"}, {8});
    auto* viewed = makeFrame<TDiscAlgCondition_LF>("TDiscAlgCondition_LF", v.dialog);
    viewed->Init();
    EXPECT_EQ(viewed->lcSelect->displayText(), QString("Оплата банковской картой"));
    EXPECT_EQ(host->warnings().size(), 2);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}
