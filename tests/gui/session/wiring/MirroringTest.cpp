#include "frontend/ui/locations/LocationRowDelegate.h"
#include "frontend/ui/shared/QrvFancyIp.h"
#include "frontend/ui/shared/Theme.h"
#include "tests/gui/MainWindowFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QStyle>
#include <QToolButton>

namespace quorvane {

namespace {

int leftEdge(const QWidget &widget) {
    return widget.mapTo(widget.window(), QPoint(0, 0)).x();
}

} // namespace

/// The main window in a language that is written from right to left.
class MirroringTest : public QObject {
    Q_OBJECT

private:
    QString m_styleBefore;
    std::unique_ptr<MainWindowFixture> m_fixture;

private Q_SLOTS:

    void initTestCase() {
        m_styleBefore = QApplication::style()->name();
        const GuiFixture services;
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
        Theme::apply(*qApp);
    }

    void cleanupTestCase() {
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        qApp->setStyleSheet({});
        QApplication::setStyle(m_styleBefore);
        QApplication::setPalette({});
    }

    void init() {
        m_fixture = std::make_unique<MainWindowFixture>();
        m_fixture->display.answerHandled();
        m_fixture->display.interval(42, true);
        m_fixture->show();
    }

    void cleanup() { m_fixture.reset(); }

    void linesBeginAtTheRight() {
        const auto *field = m_fixture->find<QLineEdit>("fieldChangeIpInterval");
        const auto *stepper = m_fixture->find<QSpinBox>("stepperChangeIpInterval");
        QVERIFY(leftEdge(*m_fixture->find<QCheckBox>("checkboxChangeIpInterval")) > leftEdge(*field));
        QCOMPARE(leftEdge(*stepper) + stepper->width(), leftEdge(*field));
        QVERIFY(leftEdge(*m_fixture->find<QWidget>("websiteButton")) >
                leftEdge(*m_fixture->find<QWidget>("aboutButton")));
    }

    void stepperIsRoundAtItsOuterSide() {
        const QImage picture = m_fixture->find<QSpinBox>("stepperChangeIpInterval")->grab().toImage();
        const int right = picture.width() - 1;
        const QColor ground = picture.pixelColor(0, 0);
        QVERIFY(picture.pixelColor(right, 0) != ground); // the line begins at the field
        QVERIFY(picture.pixelColor(right / 2, 0) != ground);
    }

    void foldedPartIsMarkedByAnArrowForwards() {
        auto *fold = m_fixture->find<QToolButton>("rotationFold");
        fold->toggle();
        QCOMPARE(fold->arrowType(), Qt::DownArrow);
        fold->toggle();
        QCOMPARE(fold->arrowType(), Qt::LeftArrow);
    }

    void markOfAFullLocationIsBehindItsTitle() {
        m_fixture->locations.fill(
            ServerModel::parseServers(ServerLines({text("7,Berlin,BER,DE,Germany,x|10.0.0.1")}), QString(),
                                      QString(), QString()),
            {}, {});
        const auto *popUp = m_fixture->find<QComboBox>("popupCountry");
        QStyleOptionViewItem option;
        option.rect = QRect(0, 0, 300, 28);
        option.direction = Qt::RightToLeft;
        option.fontMetrics = popUp->fontMetrics();
        const QModelIndex index = popUp->model()->index(1, 0);
        const QRect mirrored = LocationRowDelegate::goldRect(option, index);
        option.direction = Qt::LeftToRight;
        const QRect usual = LocationRowDelegate::goldRect(option, index);
        QCOMPARE(mirrored.left() - option.rect.left(), option.rect.right() - usual.right());
        QVERIFY(mirrored.left() > option.rect.left() && mirrored.right() < option.rect.right());
    }

    void addressIsWrittenFromLeftToRight() {
        m_fixture->addImage(text("1"));
        m_fixture->addImage(text("2"));
        auto *strip = m_fixture->find<QrvFancyIp>("viewCurrentIP");
        strip->setStringValue(text("12"));
        const auto digits = strip->findChildren<QLabel *>();
        QCOMPARE(digits.size(), 2);
        QCOMPARE(digits.first()->objectName(), text("1"));
        QVERIFY(digits.first()->x() < digits.last()->x());
    }
};

} // namespace quorvane

GUI_TEST(MirroringTest)
#include "MirroringTest.moc"
