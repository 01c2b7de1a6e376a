// The examples of the Widgets guide page (docs/api/widgets.md). Each function builds one piece
// the way an application does; the snippet test runs them and checks what they draw.
#include "WidgetsSnippets.h"

#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/VXColorConvertion.h>
#include <Quorvelle/Widgets/VXFlatButtonCell.h>
#include <Quorvelle/Widgets/VXFlatCheckboxButtonCell.h>
#include <Quorvelle/Widgets/VXFlatRadioButtonCell.h>
#include <Quorvelle/Widgets/VXGeometry.h>
#include <Quorvelle/Widgets/VXGradientView.h>
#include <Quorvelle/Widgets/VXMatrix.h>
#include <Quorvelle/Widgets/VXQuorvelleColor.h>
#include <Quorvelle/Widgets/VXQuorvelleFont.h>
#include <Quorvelle/Widgets/VXShortcuts.h>
#include <Quorvelle/Widgets/VXTrackingButton.h>

#include <QLabel>
#include <QPainter>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include <cmath>

namespace Snippets {

Quorvelle::Button *flatButton(QWidget *parent)
{
    //! [flat-button]
    auto *uninstall = new Quorvelle::Button(parent);
    // Made from a window description's settings (here the defaults: a push button), the
    // cell has the kit's blue, its pressed and its disabled colour.
    uninstall->setCell(std::make_unique<VXFlatButtonCell>(Quorvelle::ButtonCellCoding()));
    uninstall->setText(QObject::tr("&Uninstall"));
    QObject::connect(uninstall, &QAbstractButton::clicked, uninstall, [] { /* remove */ });
    //! [flat-button]
    return uninstall;
}

Quorvelle::Button *borderedButton(QWidget *parent)
{
    //! [bordered-button]
    // A VXTrackingButton knows when the mouse is over it, so the cell can show its hover look.
    auto *cancel = new VXTrackingButton(parent);
    cancel->setCellClass(QStringLiteral("VXFlatBorderedButtonCell"));
    cancel->setText(QObject::tr("Cancel"));
    //! [bordered-button]
    return cancel;
}

Quorvelle::Button *checkBox(QWidget *parent)
{
    //! [check-box]
    auto *keepSettings = new Quorvelle::Button(parent);
    Quorvelle::ButtonCellCoding coding;
    coding.buttonType = Quorvelle::ButtonCell::SwitchButton;
    // Decoded, the cell draws its title in black in the kit's regular font.
    keepSettings->setCell(std::make_unique<VXFlatCheckboxButtonCell>(coding));
    keepSettings->setText(QObject::tr("Keep my settings"));
    keepSettings->setState(Quorvelle::ButtonCell::OnState);
    //! [check-box]
    return keepSettings;
}

VXMatrix *radioMatrix(QWidget *parent)
{
    //! [radio-matrix]
    auto *reasons = new VXMatrix(parent);
    auto *rows = new QVBoxLayout(reasons); // the matrix does not lay out its rows
    for (const QString &reason :
         {QObject::tr("Too expensive"), QObject::tr("Too slow"), QObject::tr("Something else")}) {
        auto *row = new Quorvelle::Button(reasons);
        row->setCell(std::make_unique<VXFlatRadioButtonCell>()); // a radio button: exclusive
        row->setText(reason);
        rows->addWidget(row);
    }
    // 1: a rounded rectangle behind the chosen row; 2: a tag pointing right.
    reasons->setSelectionStyle(1);
    reasons->cellAtRow(1, 0)->setState(Quorvelle::ButtonCell::OnState);
    // Later: which one did the user choose? (nullptr when none)
    const int chosen = reasons->rowOfCell(reasons->selectedCell());
    //! [radio-matrix]
    Q_UNUSED(chosen);
    return reasons;
}

void styleLabel(QLabel *label)
{
    //! [palette-fonts]
    // Kit colours stay exact until drawn; newCGColor gives the QColor.
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText,
                     VXColorConvertion::newCGColor(QuorvelleColor::quorvelleTextGrayColor()));
    label->setPalette(palette);
    // Every lookup ends at a font that exists (at worst the desktop's system font).
    const VXFont font =
        QuorvelleFont::quorvelleMediumFontWithSize(QuorvelleFont::quorvelleHeaderFontSize());
    label->setFont(font.qfont());
    //! [palette-fonts]
}

VXAttributedString removalNotice(const QString &productName)
{
    //! [template]
    // A translated sentence with placeholders; the values are inserted as HTML.
    std::optional<VXAttributedString> notice = VXShortcuts::attributedStringWithTemplate(
        QObject::tr("<b>%NAME%</b> will be removed from <i>this computer</i>."),
        {{QStringLiteral("%NAME%"), productName.toHtmlEscaped()}});
    // Words marked with a tag of our own get attributes, without HTML in the translation.
    VXAttributedString hint(QObject::tr("Your files are <keep>not</keep> touched."));
    VXShortcuts::unfoldTagsWithAttributtes(
        hint, {{QStringLiteral("keep"),
                {{VXForegroundColorAttributeName,
                  QVariant::fromValue(QuorvelleColor::quorvelleRedColor())}}}});
    notice->appendAttributedString(VXAttributedString(QStringLiteral(" ")));
    notice->appendAttributedString(hint);
    VXShortcuts::setAlignment(*notice, VXCenterTextAlignment);
    //! [template]
    return *notice;
}

//! [attributed-label]
// Shows a styled text, wrapped to the widget's width.
class AttributedLabel : public QWidget
{
public:
    explicit AttributedLabel(VXAttributedString text, QWidget *parent = nullptr)
        : QWidget(parent), m_text(std::move(text))
    {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override
    {
        return int(std::ceil(VXGeometry::heightForWidth(m_text, width)));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        m_text.drawInRect(painter, QRectF(rect())); // y-down, like the widget
    }

private:
    VXAttributedString m_text;
};
//! [attributed-label]

QWidget *attributedLabel(const VXAttributedString &text, QWidget *parent)
{
    return new AttributedLabel(text, parent);
}

VXGradientView *gradientHeader(QWidget *parent)
{
    //! [gradient]
    auto *header = new VXGradientView(parent);
    header->setStartGradientColor(VXColor::whiteColor());
    header->setFinishGradientColor(QuorvelleColor::serviceWindowBackgroundColor());
    header->setGradientAngle(270.0); // the start colour on the top row
    header->setTopLineColor(std::nullopt);
    header->setBottomLineColor(QuorvelleColor::quorvelleGrayColor());
    // Only referenced: the pattern must outlive the view.
    static const double dotted[] = {1.0, 2.0};
    header->setBottomLineDash(dotted, 2);
    header->setMinimumHeight(48);
    //! [gradient]
    return header;
}

QTableView *alternatingTable(QWidget *parent)
{
    //! [alternating-rows]
    auto *model = new QStandardItemModel(3, 2, parent);
    auto *table = new QTableView(parent);
    table->setModel(model);
    // That is all: the kit gives every item view with alternating rows white and
    // tableAlternateRowBackgroundColor() as its Base and AlternateBase.
    table->setAlternatingRowColors(true);
    const QList<VXColor> rows = QuorvelleColor::controlAlternatingRowBackgroundColors();
    //! [alternating-rows]
    Q_UNUSED(rows);
    return table;
}

} // namespace Snippets
