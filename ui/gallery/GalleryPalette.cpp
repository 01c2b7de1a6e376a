#include "GallerySections.h"

#include "VXColorConvertion.h"
#include "VXQuorvelleColor.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>

namespace {

// A colour chip over a checkerboard, so translucent colours show as translucent.
class Swatch : public QWidget
{
public:
    explicit Swatch(const VXColor &color) : m_color(color) { setFixedSize(36, 22); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        for (int y = 0; y < height(); y += 6)
            for (int x = 0; x < width(); x += 6)
                p.fillRect(x, y, 6, 6, ((x + y) / 6) % 2 ? QColor(200, 200, 200) : Qt::white);
        p.fillRect(rect(), VXColorConvertion::newCGColor(m_color));
        p.setPen(QColor(0, 0, 0, 60));
        p.drawRect(rect().adjusted(0, 0, -1, -1));
    }

private:
    VXColor m_color;
};

} // namespace

QWidget *galleryPaletteSection()
{
    using namespace QuorvelleColor;
    const QList<QPair<QString, VXColor (*)()>> colors = {
        {QStringLiteral("systemScanCriticalColor"), &systemScanCriticalColor},
        {QStringLiteral("systemScanSeriousColor"), &systemScanSeriousColor},
        {QStringLiteral("systemScanExcellentColor"), &systemScanExcellentColor},
        {QStringLiteral("systemScanCriticalBackgroundColor"), &systemScanCriticalBackgroundColor},
        {QStringLiteral("systemScanSeriousBackgroundColor"), &systemScanSeriousBackgroundColor},
        {QStringLiteral("systemScanExcellentBackgroundColor"), &systemScanExcellentBackgroundColor},
        {QStringLiteral("tableAlternateRowBackgroundColor"), &tableAlternateRowBackgroundColor},
        {QStringLiteral("levelIndicatorRedGradienColor"), &levelIndicatorRedGradienColor},
        {QStringLiteral("levelIndicatorYellowGradienColor"), &levelIndicatorYellowGradienColor},
        {QStringLiteral("levelIndicatorGreenGradienColor"), &levelIndicatorGreenGradienColor},
        {QStringLiteral("hyperlinkButtonTextColor"), &hyperlinkButtonTextColor},
        {QStringLiteral("quorvelleBlueColor"), &quorvelleBlueColor},
        {QStringLiteral("quorvelleDarkBlueColor"), &quorvelleDarkBlueColor},
        {QStringLiteral("quorvelleLightBlueColor"), &quorvelleLightBlueColor},
        {QStringLiteral("quorvelleRedColor"), &quorvelleRedColor},
        {QStringLiteral("quorvelleOrangeColor"), &quorvelleOrangeColor},
        {QStringLiteral("quorvelleGreenColor"), &quorvelleGreenColor},
        {QStringLiteral("quorvelleGrayColor"), &quorvelleGrayColor},
        {QStringLiteral("quorvelleDarkGrayColor"), &quorvelleDarkGrayColor},
        {QStringLiteral("quorvelleTextGrayColor"), &quorvelleTextGrayColor},
        {QStringLiteral("quorvelleLightGrayDisabledControlColor"),
         &quorvelleLightGrayDisabledControlColor},
        {QStringLiteral("quorvelleGrayDisabledControlColor"), &quorvelleGrayDisabledControlColor},
        {QStringLiteral("quorvelleBlueDisabledControlColor"), &quorvelleBlueDisabledControlColor},
        {QStringLiteral("facebookColor"), &facebookColor},
        {QStringLiteral("facebookDarkColor"), &facebookDarkColor},
        {QStringLiteral("serviceWindowBackgroundColor"), &serviceWindowBackgroundColor},
        {QStringLiteral("infoMessageSuccessBorderColor"), &infoMessageSuccessBorderColor},
        {QStringLiteral("infoMessageSuccessFillColor"), &infoMessageSuccessFillColor},
        {QStringLiteral("infoMessageSuccessTextColor"), &infoMessageSuccessTextColor},
        {QStringLiteral("infoMessageErrorBorderColor"), &infoMessageErrorBorderColor},
        {QStringLiteral("infoMessageErrorFillColor"), &infoMessageErrorFillColor},
        {QStringLiteral("infoMessageErrorTextColor"), &infoMessageErrorTextColor},
    };
    auto *section = new QWidget;
    auto *grid = new QGridLayout(section);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    constexpr int columns = 3;
    for (int i = 0; i < colors.size(); ++i) {
        const int row = i / columns, column = (i % columns) * 2;
        grid->addWidget(new Swatch(colors.at(i).second()), row, column);
        auto *name = new QLabel(colors.at(i).first);
        grid->addWidget(name, row, column + 1);
    }
    grid->setColumnStretch(columns * 2, 1);
    return section;
}

static GallerySectionRegistration registration(10, QStringLiteral("Palette"),
                                               &galleryPaletteSection);
