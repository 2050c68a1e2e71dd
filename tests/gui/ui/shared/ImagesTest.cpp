#include "frontend/ui/shared/Images.h"

#include "frontend/ui/shared/PictureEngine.h"
#include "tests/gui/GuiTest.h"

#include <QPainter>
#include <QRegularExpression>

namespace quorvane {

/// The program's named images and their icons.
class ImagesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;

    QString save(const char *name, int width, int height, Qt::GlobalColor colour) const {
        const QString folder = m_fixture->services.platform().bundle->resourcesPath() + text("/images/");
        QDir().mkpath(folder);
        QImage image(width, height, QImage::Format_ARGB32);
        image.fill(colour);
        const QString path = folder + text(name) + text(".png");
        return image.save(path) ? path : QString();
    }

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<GuiFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void theSmallestLargeEnoughPictureIsUsed() {
        PictureEngine engine({save("one", 22, 22, Qt::red), save("one@2x", 44, 44, Qt::blue)});
        const auto colourAt = [&engine](int side) {
            return engine.pixmap(QSize(side, side), QIcon::Normal, QIcon::Off).toImage().pixelColor(1, 1);
        };
        QCOMPARE(colourAt(16), QColor(Qt::red));
        QCOMPARE(colourAt(22), QColor(Qt::red));
        QCOMPARE(colourAt(23), QColor(Qt::blue));
        QCOMPARE(colourAt(100), QColor(Qt::blue));
        QCOMPARE(engine.availableSizes(QIcon::Normal, QIcon::Off), (QList<QSize>{{22, 22}, {44, 44}}));
    }

    void aPictureIsNeverMadeLargerAndKeepsItsShape() {
        PictureEngine engine({save("flag", 28, 21, Qt::green)});
        QCOMPARE(engine.pixmap(QSize(100, 100), QIcon::Normal, QIcon::Off).size(), QSize(28, 21));
        QCOMPARE(engine.pixmap(QSize(16, 16), QIcon::Normal, QIcon::Off).size(), QSize(16, 12));
        QCOMPARE(engine.actualSize(QSize(16, 16), QIcon::Normal, QIcon::Off), QSize(16, 12));
    }

    void aHighResolutionPictureHasItsFullSize() {
        PictureEngine engine({save("sharp@2x", 44, 44, Qt::blue)});
        const QPixmap drawn = engine.pixmap(QSize(44, 44), QIcon::Normal, QIcon::Off);
        QCOMPARE(drawn.size(), QSize(44, 44));
        QCOMPARE(drawn.devicePixelRatio(), 1.0);
    }

    void itIsDrawnInTheMiddle() {
        PictureEngine engine({save("small", 4, 4, Qt::red)});
        QImage canvas(10, 10, QImage::Format_ARGB32);
        canvas.fill(Qt::white);
        QPainter painter(&canvas);
        engine.paint(&painter, canvas.rect(), QIcon::Normal, QIcon::Off);
        painter.end();
        QCOMPARE(canvas.pixelColor(2, 2), QColor(Qt::white));
        QCOMPARE(canvas.pixelColor(3, 3), QColor(Qt::red));
        QCOMPARE(canvas.pixelColor(6, 6), QColor(Qt::red));
        QCOMPARE(canvas.pixelColor(7, 7), QColor(Qt::white));
    }

    void aDisabledIconLooksDifferentAndASelectedOneDoesNot() {
        PictureEngine engine({save("plain", 8, 8, Qt::red)});
        const QImage enabled = engine.pixmap(QSize(8, 8), QIcon::Normal, QIcon::Off).toImage();
        const QImage disabled = engine.pixmap(QSize(8, 8), QIcon::Disabled, QIcon::Off).toImage();
        const QImage selected = engine.pixmap(QSize(8, 8), QIcon::Selected, QIcon::Off).toImage();
        QVERIFY(enabled.pixelColor(4, 4) != disabled.pixelColor(4, 4));
        QCOMPARE(selected.pixelColor(4, 4), QColor(Qt::red));
    }

    void aMissingSizeIsNotReported() {
        QTest::failOnWarning(QRegularExpression(text(".*")));
        PictureEngine engine({save("only", 8, 8, Qt::red), text("/does/not/exist.png")});
        QCOMPARE(engine.availableSizes(QIcon::Normal, QIcon::Off), QList<QSize>{QSize(8, 8)});
    }

    void filesThatAreNoPicturesAreLeftOut() {
        QFile file(m_fixture->services.addResource(text("broken.png"), "no picture"));
        PictureEngine engine({file.fileName(), text("/does/not/exist.png")});
        QVERIFY(engine.isNull());
        QVERIFY(engine.pixmap(QSize(8, 8), QIcon::Normal, QIcon::Off).isNull());
        QImage canvas(10, 10, QImage::Format_ARGB32);
        QPainter painter(&canvas);
        engine.paint(&painter, canvas.rect(), QIcon::Normal, QIcon::Off);
        QVERIFY(!engine.actualSize(QSize(8, 8), QIcon::Normal, QIcon::Off).isValid());
    }

    void namedImages() {
        save("own", 22, 22, Qt::red);
        save("own@2x", 44, 44, Qt::blue);
        QVERIFY(Images::exists(text("own")));
        QCOMPARE(Images::icon(text("own")).availableSizes().size(), 2);
        QCOMPARE(Images::pixmap(text("own"), QSize(22, 22), 2.0).size(), QSize(44, 44));
        QVERIFY(Images::icon(text("nothing-of-this-name")).isNull());
        for (const char *name : {"", "../images/own", "own.png", "ow\xc3\xb6n", "a/b"}) {
            QVERIFY(!Images::exists(text(name)));
            QVERIFY(Images::icon(text(name)).isNull());
        }
    }
};

} // namespace quorvane

GUI_TEST(ImagesTest)
#include "ImagesTest.moc"
