#include "AboutWindow.h"

#include "AboutLayout.h"

#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/VXAttributedString.h>
#include <Quorvelle/Widgets/VXColorConvertion.h>
#include <Quorvelle/Widgets/VXGeometry.h>
#include <Quorvelle/Widgets/VXGradientView.h>
#include <Quorvelle/Widgets/VXMatrix.h>
#include <Quorvelle/Widgets/VXQuorvelleColor.h>
#include <Quorvelle/Widgets/VXQuorvelleFont.h>
#include <Quorvelle/Widgets/VXShortcuts.h>
#include <Quorvelle/Widgets/VXTrackingButton.h>

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

using Quorvelle::Button;
using Quorvelle::ButtonCell;

namespace {

QColor qcolor(const VXColor &color)
{
    return VXColorConvertion::newCGColor(color);
}

// One attributed string, drawn at the width of the widget.
class AttributedText : public QWidget
{
public:
    AttributedText(VXAttributedString text, int width, QWidget *parent = nullptr)
        : QWidget(parent), m_text(std::move(text))
    {
        const QSizeF size = VXGeometry::sizeForWidth(m_text, width);
        setFixedSize(width, int(std::ceil(size.height())));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        m_text.drawInRect(painter, QRectF(rect()));
    }

private:
    VXAttributedString m_text;
};

// The header's second line, from a template whose placeholders take the machine's answers.
// The template is HTML, so the answers are escaped; its runs then get the kit's family at the
// header's size, keeping the template's bold and italic.
VXAttributedString headerLine(const SystemFacts &facts)
{
    const QString pattern =
        QCoreApplication::translate("AboutWindow", "<b>%NAME%</b> runs <i>%SYSTEM%</i>");
    VXAttributedString line =
        VXShortcuts::attributedStringWithTemplate(
            pattern, {{QStringLiteral("%NAME%"), facts.computerName.toHtmlEscaped()},
                      {QStringLiteral("%SYSTEM%"), facts.systemName.toHtmlEscaped()}})
            .value_or(VXAttributedString(facts.computerName));

    const double size = QuorvelleFont::quorvelleHeaderFontSize();
    std::uint64_t index = 0;
    while (index < line.length()) {
        VXRange run;
        const QVariant font = line.attributeAtIndex(VXFontAttributeName, index, &run);
        const VXFont face = font.value<VXFont>();
        const bool bold = face.isValid() && face.isBold();
        const bool italic = face.isValid() && face.isItalic();
        // The kit's regular face converted to the run's traits: the kit's own bold and italic
        // fall back to the regular face where its faces are not installed.
        const VXFont kitFace = QuorvelleFont::quorvelleRegularFontWithSize(size).withTraits(
            VXFont::traitMask(bold, italic));
        line.addAttribute(VXFontAttributeName, QVariant::fromValue(kitFace), run);
        index = std::max(run.end(), index + 1);
    }
    VXShortcuts::setColor(line, VXColor::whiteColor());
    // One line whatever the names' lengths: the band has room for no second one.
    VXParagraphStyle oneLine;
    oneLine.lineBreakMode = VXLineBreakByTruncatingTail;
    VXShortcuts::setAttribute(line, VXParagraphStyleAttributeName, QVariant::fromValue(oneLine));
    return line;
}

// The white window of the suite: black texts, the kit's blue for selections.
void applySuiteLook(QWidget *window)
{
    using namespace QuorvelleColor;
    QPalette palette = window->palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Window, Qt::white);
        palette.setColor(group, QPalette::Base, Qt::white);
        palette.setColor(group, QPalette::WindowText, Qt::black);
        palette.setColor(group, QPalette::Text, Qt::black);
        palette.setColor(group, QPalette::ButtonText, Qt::black);
        palette.setColor(group, QPalette::Highlight, qcolor(quorvelleBlueColor()));
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
    }
    window->setPalette(palette);
    window->setAutoFillBackground(true);
    window->setFont(
        QuorvelleFont::quorvelleRegularFontWithSize(QuorvelleFont::quorvelleRegularFontSize())
            .qfont());
}

} // namespace

AboutWindow::AboutWindow(SystemFacts facts, QWidget *parent)
    : QWidget(parent), m_facts(std::move(facts))
{
    setWindowTitle(QCoreApplication::translate("AboutWindow", "About this computer"));
    applySuiteLook(this);
    setFixedSize(AboutLayout::windowWidth, AboutLayout::windowHeight);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(makeBody(), 1);
    column->addWidget(makeFooter());

    showSection(0);
}

QWidget *AboutWindow::makeHeader()
{
    using namespace QuorvelleColor;
    auto *header = new VXGradientView;
    header->setFixedHeight(AboutLayout::headerHeight);
    header->setGradientAngle(270);
    header->setStartGradientColor(quorvelleBlueColor());
    header->setFinishGradientColor(quorvelleDarkBlueColor());
    header->setTopLineColor(std::nullopt);
    header->setBottomLineColor(std::nullopt);

    auto *lines = new QVBoxLayout(header);
    lines->setContentsMargins(AboutLayout::margin, 12, AboutLayout::margin, 12);
    lines->setSpacing(2);
    auto *title = new QLabel(windowTitle());
    title->setFont(QuorvelleFont::quorvelleBoldFontWithSize(QuorvelleFont::quorvelleTitleFontSize())
                       .withTraits(VXFont::traitMask(true, false))
                       .qfont());
    QPalette white = title->palette();
    white.setColor(QPalette::WindowText, Qt::white);
    title->setPalette(white);
    lines->addWidget(title);
    lines->addWidget(new AttributedText(headerLine(m_facts),
                                        AboutLayout::windowWidth - 2 * AboutLayout::margin));
    lines->addStretch(1);
    return header;
}

QWidget *AboutWindow::makeBody()
{
    auto *body = new QWidget;
    auto *row = new QHBoxLayout(body);
    row->setContentsMargins(AboutLayout::margin, AboutLayout::bodyTop - AboutLayout::headerHeight,
                            AboutLayout::margin, 0);
    row->setSpacing(AboutLayout::sidebarSpacing);

    // The sections: one radio row each, the chosen one marked by the arrow-shaped band that
    // points at the list it fills.
    m_sections = new VXMatrix;
    m_sections->setSelectionStyle(2);
    m_sections->setFixedWidth(AboutLayout::sidebarWidth);
    m_sections->setAccessibleName(QCoreApplication::translate("AboutWindow", "Sections"));
    auto *rows = new QVBoxLayout(m_sections);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(2);
    for (int index = 0; index < m_facts.sections.size(); ++index) {
        auto *radio = new Button;
        radio->setCellClass(QStringLiteral("VXFlatRadioButtonCell"));
        radio->setButtonType(ButtonCell::RadioButton);
        radio->setText(m_facts.sections.at(index).title);
        radio->setMinimumHeight(28);
        connect(radio, &QAbstractButton::toggled, this, [this, index](bool on) {
            if (on)
                showSection(index);
        });
        rows->addWidget(radio);
    }
    rows->addStretch(1);
    row->addWidget(m_sections);

    // The facts, label and value, on the kit's alternating rows.
    m_model = new QStandardItemModel(0, 2, this);
    m_list = new QTableView;
    auto *list = m_list;
    list->setModel(m_model);
    list->setAlternatingRowColors(true);
    list->setShowGrid(false);
    list->setWordWrap(false);
    list->setTextElideMode(Qt::ElideMiddle);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->horizontalHeader()->hide();
    list->horizontalHeader()->setStretchLastSection(true);
    list->verticalHeader()->hide();
    list->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    list->verticalHeader()->setMinimumSectionSize(AboutLayout::listRowHeight);
    list->verticalHeader()->setDefaultSectionSize(AboutLayout::listRowHeight);
    list->setColumnWidth(0, AboutLayout::listLabelWidth);
    list->setFixedHeight(AboutLayout::listBottom - AboutLayout::listTop);
    row->addWidget(list, 1, Qt::AlignTop);
    return body;
}

QWidget *AboutWindow::makeFooter()
{
    auto *footer = new QWidget;
    auto *row = new QHBoxLayout(footer);
    row->setContentsMargins(AboutLayout::margin, AboutLayout::footerTop, AboutLayout::margin,
                            AboutLayout::footerBottom);

    const VXFont buttonFont =
        QuorvelleFont::quorvelleMediumFontWithSize(QuorvelleFont::quorvelleHeaderFontSize());
    // A bordered button that lights up under the pointer.
    auto *copy = new VXTrackingButton;
    copy->setCellClass(QStringLiteral("VXFlatBorderedButtonCell"));
    copy->setText(QCoreApplication::translate("AboutWindow", "&Copy to Clipboard"));
    copy->cell()->setFont(buttonFont);
    copy->setFixedHeight(AboutLayout::buttonHeight);
    copy->setMinimumWidth(copy->sizeHint().width() + 24);
    connect(copy, &QAbstractButton::clicked, this,
            [this] { QApplication::clipboard()->setText(m_facts.toText()); });

    // The window's one action: the kit's flat blue button.
    auto *close = new Button;
    close->setCellClass(QStringLiteral("VXFlatButtonCell"));
    close->setText(QCoreApplication::translate("AboutWindow", "Close"));
    close->cell()->setFont(buttonFont);
    close->setFixedSize(AboutLayout::closeButtonWidth, AboutLayout::buttonHeight);
    connect(close, &QAbstractButton::clicked, this, &QWidget::close);

    row->addWidget(copy);
    row->addStretch(1);
    row->addWidget(close);
    return footer;
}

void AboutWindow::showSection(int index)
{
    if (index < 0 || index >= m_facts.sections.size())
        return;
    if (Button *radio = m_sections->cellAtRow(index, 0)) {
        radio->setChecked(true);
        // The keyboard stays on the chosen section, as in any radio group.
        const QWidget *focus = focusWidget();
        if (!focus || focus->parentWidget() == m_sections)
            radio->setFocus(Qt::OtherFocusReason);
    }

    m_list->setAccessibleName(m_facts.sections.at(index).title);
    const QColor labelColor = qcolor(QuorvelleColor::quorvelleTextGrayColor());
    m_model->removeRows(0, m_model->rowCount());
    for (const SystemFact &fact : m_facts.sections.at(index).facts) {
        auto *label = new QStandardItem(fact.label);
        label->setForeground(labelColor);
        auto *value = new QStandardItem(fact.value);
        value->setToolTip(fact.value);
        m_model->appendRow({label, value});
    }
}
