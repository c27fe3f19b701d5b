#pragma once
// Helpers of the mass-edit tests: frames made as the workbench's mass-edit dialog makes them, for
// a column of the payment documents, and the documents' values as stored.
#include "frames/core/ME_Abs.h"
#include "frames/core/Registry.h"
#include "host/MassEdit.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>
#include <map>
#include <memory>

namespace frames::test {

class MassEditTest : public DbTest {
protected:
    // The frame the dialog shows for a column of the documents, with the dialog's parameters.
    template <typename T> std::unique_ptr<T> frameFor(const QString& column) {
        const workbench::MassEditColumn* c = workbench::documentMassEdit().find(column);
        EXPECT_NE(c, nullptr) << column.toStdString();
        std::unique_ptr<TAbsEditFrame> made(Registry::instance().create(c->frameClass, nullptr));
        std::unique_ptr<T> f(qobject_cast<T*>(made.get()));
        EXPECT_NE(f, nullptr) << c->frameClass.toStdString();
        if (f) made.release();
        f->SetParams(workbench::massEditParams(workbench::documentMassEdit(), column));
        return f;
    }
    // A frame of that class with a parameter string of the test's own.
    template <typename T> std::unique_ptr<T> frameWith(const QString& cls, const QStringList& params) {
        std::unique_ptr<T> f(qobject_cast<T*>(Registry::instance().create(cls, nullptr)));
        EXPECT_NE(f, nullptr) << cls.toStdString();
        f->SetParams(params.join('\n'));
        return f;
    }
    int apply(TAbsMEditFrame* f, const QList<int>& keys) { return workbench::runMassEdit(f, keys); }

    // The column of every document, by key.
    std::map<int, QVariant> column(const QString& name) const {
        std::map<int, QVariant> out;
        auto d = secondConnection();
        db::Transaction tr(d.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(d.get(), &tr);
        q.setSql(QStringLiteral("select ID_PAYMENT_DOC, %1 from PAYMENT_DOC").arg(name));
        q.open();
        while (q.next()) out[q.value(0).toInt()] = q.value(1);
        q.close();
        tr.commit();
        return out;
    }
    // Checks that only the documents in changed differ between before and after.
    static void expectOnlyChanged(const std::map<int, QVariant>& before, const std::map<int, QVariant>& after,
                                  const QList<int>& changed) {
        ASSERT_EQ(before.size(), after.size());
        for (const auto& [id, v] : before) {
            const bool differs = v != after.at(id);
            EXPECT_EQ(differs, changed.contains(id))
                << "document " << id << ": " << v.toString().toStdString() << " -> "
                << after.at(id).toString().toStdString();
        }
    }
    // The parameter of the frame's update as it was last sent.
    static QVariant sent(TAbsMEditFrame* f, const QString& name) {
        db::Param* p = f->pfUpdate->findParam(name);
        EXPECT_NE(p, nullptr) << name.toStdString();
        return p ? p->value() : QVariant();
    }
    static bool sentNull(TAbsMEditFrame* f, const QString& name) {
        db::Param* p = f->pfUpdate->findParam(name);
        return p && p->isNull();
    }
    int marksLeft() const { return scalar(QStringLiteral("select count(*) from MEDIT_MARKS")).toInt(); }
};

} // namespace frames::test
