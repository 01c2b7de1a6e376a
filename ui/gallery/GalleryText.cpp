#include "GallerySections.h"

#include "QuorvelleStringAttributedTitles.h"
#include "VXColorConvertion.h"
#include "VXGeometry.h"
#include "VXQuorvelleColor.h"
#include "VXQuorvelleFont.h"
#include "VXShortcuts.h"

#include <QPainter>
#include <QVBoxLayout>
#include <QWidget>

#include <cmath>

namespace {

// Draws one attributed string at the width it is given, over an optional background.
class AttributedLabel : public QWidget
{
public:
    AttributedLabel(VXAttributedString text, double width, QColor background = Qt::transparent)
        : m_text(std::move(text)), m_background(background)
    {
        const QSizeF size = VXGeometry::sizeForWidth(m_text, width);
        setFixedSize(int(width) + 12, int(std::ceil(size.height())) + 8);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        if (m_background.alpha())
            p.fillRect(rect(), m_background);
        m_text.drawInRect(p, QRectF(rect()).adjusted(6, 4, -6, -4));
    }

private:
    VXAttributedString m_text;
    QColor m_background;
};

} // namespace

QWidget *galleryTextSection()
{
    using namespace QuorvelleFont;
    auto *section = new QWidget;
    auto *column = new QVBoxLayout(section);

    // A template with marks unfolded into attributes, and a hyperlink put in its place.
    VXAttributedString templated(
        QStringLiteral(
            "Removing <b>Quorvelle</b> keeps your <i>documents</i>; read the <u>notes</u>"
            " or visit LINK for help. <c>An unclosed tag runs to the end."),
        {{VXFontAttributeName,
          QVariant::fromValue(quorvelleRegularFontWithSize(quorvelleRegularFontSize()))},
         {VXForegroundColorAttributeName,
          QVariant::fromValue(QuorvelleColor::quorvelleTextGrayColor())}});
    VXShortcuts::unfoldTagsWithAttributtes(
        templated,
        {{QStringLiteral("b"),
          {{VXFontAttributeName,
            QVariant::fromValue(quorvelleBoldFontWithSize(quorvelleRegularFontSize()))},
           {VXForegroundColorAttributeName,
            QVariant::fromValue(QuorvelleColor::quorvelleBlueColor())}}},
         {QStringLiteral("i"),
          {{VXFontAttributeName,
            QVariant::fromValue(quorvelleItalicFontWithSize(quorvelleRegularFontSize()))}}},
         {QStringLiteral("u"), {{VXUnderlineStyleAttributeName, QVariant::fromValue(qint64(1))}}},
         {QStringLiteral("c"),
          {{VXForegroundColorAttributeName,
            QVariant::fromValue(QuorvelleColor::quorvelleRedColor())}}}});
    VXShortcuts::replaceString(
        templated, QStringLiteral("LINK"),
        VXShortcuts::hyperlinkFromString(QStringLiteral("the support page"),
                                         QUrl(QStringLiteral("https://example.org/support")),
                                         quorvelleRegularFontSize()));
    column->addWidget(new AttributedLabel(templated, 460));

    // The same kind of text read from an HTML fragment, centred.
    if (auto html = VXShortcuts::attributedStringWithTemplate(
            QStringLiteral("<b>%NAME%</b> will be removed from <i>%PLACE%</i>."),
            {{QStringLiteral("%NAME%"), QStringLiteral("Quorvelle")},
             {QStringLiteral("%PLACE%"), QStringLiteral("this computer")}})) {
        VXShortcuts::setAlignment(*html, VXCenterTextAlignment);
        column->addWidget(new AttributedLabel(*html, 460));
    }

    // Button titles: plain, bold with the white shadow, disabled, and one cut at the tail.
    const QColor buttonFace(214, 214, 214);
    column->addWidget(new AttributedLabel(
        QuorvelleString::standartAttributedButtonTitle(QStringLiteral("Uninstall")), 200,
        buttonFace));
    column->addWidget(new AttributedLabel(
        QuorvelleString::standartBoldAttributedButtonTitle(QStringLiteral("Uninstall")), 200,
        buttonFace));
    column->addWidget(new AttributedLabel(
        QuorvelleString::attributedButtonTitleEnabled(QStringLiteral("Disabled title"), false), 200,
        buttonFace));
    column->addWidget(
        new AttributedLabel(QuorvelleString::standartAttributedButtonTitle(
                                QStringLiteral("A very long button title that is cut")),
                            140, buttonFace));
    return section;
}

static GallerySectionRegistration registration(30, QStringLiteral("Attributed text"),
                                               &galleryTextSection);
