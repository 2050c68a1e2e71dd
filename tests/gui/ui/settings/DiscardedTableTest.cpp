#include "frontend/ui/settings/QrvDiscardIpTableViewController.h"

#include "tests/gui/GuiTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>

namespace quorvane {

class DiscardedTableTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;
    std::unique_ptr<QrvTableDataSource> m_source;
    std::unique_ptr<QrvDiscardIpTableViewController> m_table;

    [[nodiscard]] QVariant stored() const {
        return m_fixture->services.preferences().value(text("discardedIPs"));
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        m_source = std::make_unique<QrvTableDataSource>();
        m_source->awakeFromNib();
        m_table = std::make_unique<QrvDiscardIpTableViewController>();
        m_table->setDataSource(m_source.get());
    }

    void cleanup() {
        m_table.reset();
        m_source.reset();
        m_fixture.reset();
    }

    void nothingStoredIsNoRow() {
        QCOMPARE(m_table->getRowData(), QStringList());
        QVERIFY(!stored().isValid());
    }

    void storedEmptyTextIsOneEmptyRow() {
        m_fixture->services.preferences().setValue(text("discardedIPs"), text(""));
        m_source->awakeFromNib();
        QCOMPARE(m_table->getRowData(), QStringList{text("")});
    }

    void rowsAreStoredJoinedAndSavedAfterEveryChange() {
        for (const char *row : {"a", "b", "c"}) {
            m_table->addRow(text(row));
        }
        QCOMPARE(stored(), QVariant(text("a|b|c")));
        QCOMPARE(m_fixture->services.preferences().synchronizations(), 3);
        m_table->selectRow(1);
        m_table->deleteSelectedRow();
        QCOMPARE(stored(), QVariant(text("a|c")));
        QCOMPARE(m_fixture->services.preferences().synchronizations(), 4);
        m_table->clearAll();
        QCOMPARE(stored(), QVariant(text("")));
        QCOMPARE(m_fixture->services.preferences().synchronizations(), 5);
        QVERIFY(!stored().toString().isNull());
    }

    void duplicatesAndMissingValuesChangeNothing() {
        m_table->addRow(text("a"));
        const int saves = m_fixture->services.preferences().synchronizations();
        m_table->addRow(text("a"));
        m_table->addRow(QString());
        QCOMPARE(m_table->getRowData(), QStringList{text("a")});
        QCOMPARE(m_fixture->services.preferences().synchronizations(), saves);
        QVERIFY(m_table->hasRow(text("a")));
        QVERIFY(!m_table->hasRow(text("A")));
    }

    void emptyTextIsARowLikeAnother() {
        m_table->addRow(text(""));
        QCOMPARE(m_table->getRowData(), QStringList{text("")});
        m_table->addRow(text("a"));
        QCOMPARE(stored(), QVariant(text("|a")));
    }

    void clearingAnEmptyListStoresIt() {
        m_table->clearAll();
        QCOMPARE(stored(), QVariant(text("")));
    }

    void deletingWithoutASelectionOrOutsideTheListChangesNothing() {
        m_table->addRow(text("a"));
        m_table->clearSelection();
        m_table->deleteSelectedRow();
        m_source->deleteRow(-1);
        m_source->deleteRow(1);
        QCOMPARE(m_table->getRowData(), QStringList{text("a")});
        QCOMPARE(stored(), QVariant(text("a")));
        QCOMPARE(m_fixture->services.preferences().synchronizations(), 1);
    }

    void storedRowsComeBackInOrder() {
        m_fixture->services.preferences().setValue(text("discardedIPs"), text("1.1.1.1|2.2.2.2||3.3.3.3"));
        m_source->awakeFromNib();
        QCOMPARE(m_table->getRowData(),
                 (QStringList{text("1.1.1.1"), text("2.2.2.2"), text(""), text("3.3.3.3")}));
    }

    void tableShowsTheRowsAndNothingBeyond() {
        m_table->addRow(text("a"));
        QCOMPARE(m_source->rowCount(), 1);
        QCOMPARE(m_source->data(m_source->index(0, 0)).toString(), text("a"));
        QVERIFY(!m_source->data(m_source->index(5, 0)).isValid());
        QVERIFY(m_source->flags(m_source->index(0, 0)).testFlag(Qt::ItemIsSelectable));
    }

    void keysCopyAndRequestDeletion() {
        QSignalSpy deleteRequests(m_table.get(), &QrvDiscardIpTableViewController::deletePressed);
        m_table->addRow(text("1.1.1.1"));
        m_table->addRow(text("2.2.2.2"));
        m_table->show();
        m_table->selectRow(1);
        QTest::keyClick(m_table.get(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), text("2.2.2.2"));
        QTest::keyClick(m_table.get(), Qt::Key_Delete);
        QCOMPARE(deleteRequests.size(), 1);
        m_table->deleteSelectedRow();
        QCOMPARE(m_table->getRowData(), QStringList{text("1.1.1.1")});
        QCOMPARE(m_table->currentIndex().row(), 0); // the next Delete needs no other selection
        m_table->deleteSelectedRow();
        QCOMPARE(m_table->getRowData(), QStringList());
    }

    void anotherKeyIsAnotherList() {
        QrvTableDataSource sites(Preference::CookieSites);
        sites.awakeFromNib();
        sites.addRow(text("example.test"));
        QVERIFY(!stored().isValid());
        QCOMPARE(m_fixture->services.preferences().string(text("cookieSites")), text("example.test"));
    }
};

} // namespace quorvane

GUI_TEST(DiscardedTableTest)
#include "DiscardedTableTest.moc"
