#include "QuorvelleKitDesignerPlugin.h"

#include <Quorvelle/Widgets/Button.h>
#include <Quorvelle/Widgets/VXColorConvertion.h>
#include <Quorvelle/Widgets/VXGradientView.h>
#include <Quorvelle/Widgets/VXMatrix.h>
#include <Quorvelle/Widgets/VXQuorvelleColor.h>
#include <Quorvelle/Widgets/VXTrackingButton.h>

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

const QString kGroup = QStringLiteral("Quorvelle Kit");

QColor kitColor(const VXColor &color)
{
    return VXColorConvertion::newCGColor(color);
}

// A widget-box icon: a 24-point picture drawn at twice the resolution, so it stays sharp on
// a high-density screen.
QIcon pictogram(const std::function<void(QPainter &)> &draw)
{
    QPixmap pixmap(48, 48);
    pixmap.setDevicePixelRatio(2.0);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    painter.end();
    return QIcon(pixmap);
}

// Designer keeps one icon per class (the last entry's), so the three button entries share
// this one: a flat button above a checked flat box.
QIcon buttonIcon()
{
    return pictogram([](QPainter &p) {
        const QColor blue = kitColor(QuorvelleColor::quorvelleBlueColor());
        p.setPen(Qt::NoPen);
        p.setBrush(blue);
        p.drawRoundedRect(QRectF(1, 3, 22, 9), 2.5, 2.5);
        p.setPen(QPen(Qt::white, 1.5));
        p.drawLine(QPointF(7, 7.5), QPointF(17, 7.5));
        p.setPen(QPen(blue, 1.5));
        p.setBrush(Qt::NoBrush);
        p.drawRoundedRect(QRectF(1.75, 14.75, 7.5, 7.5), 1.5, 1.5);
        p.setPen(QPen(blue, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(3.5, 18.5), QPointF(5, 20), QPointF(7.5, 17)}));
        p.setPen(QPen(kitColor(QuorvelleColor::quorvelleGrayColor()), 1.5));
        p.drawLine(QPointF(12, 18.5), QPointF(21, 18.5));
    });
}

// Two rows of radio marks, the first selected and marked by the rounded shape behind it (one
// icon per class, as for the buttons).
QIcon matrixIcon()
{
    return pictogram([](QPainter &p) {
        const QColor blue = kitColor(QuorvelleColor::quorvelleBlueColor());
        const QColor gray = kitColor(QuorvelleColor::quorvelleGrayColor());
        QColor tint = blue;
        tint.setAlphaF(0.25);
        p.setPen(Qt::NoPen);
        p.setBrush(tint);
        p.drawRoundedRect(QRectF(1, 3, 22, 9), 3, 3);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(blue, 1.5));
        p.drawEllipse(QPointF(6, 7.5), 2.75, 2.75);
        p.setBrush(blue);
        p.drawEllipse(QPointF(6, 7.5), 1.2, 1.2);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(gray, 1.5));
        p.drawEllipse(QPointF(6, 17.5), 2.75, 2.75);
        p.drawLine(QPointF(11, 17.5), QPointF(19, 17.5));
        p.setPen(QPen(blue, 1.5));
        p.drawLine(QPointF(11, 7.5), QPointF(17, 7.5));
    });
}

QIcon trackingButtonIcon()
{
    return pictogram([](QPainter &p) {
        const QColor blue = kitColor(QuorvelleColor::quorvelleBlueColor());
        p.setPen(QPen(blue, 1.5));
        p.setBrush(kitColor(QuorvelleColor::quorvelleLightBlueColor()));
        p.drawRoundedRect(QRectF(1.5, 4.5, 18, 9), 2.5, 2.5);
        // The pointer over it.
        QPainterPath arrow;
        arrow.moveTo(12, 9);
        arrow.lineTo(12, 22);
        arrow.lineTo(15, 19);
        arrow.lineTo(17.5, 23);
        arrow.lineTo(19.5, 22);
        arrow.lineTo(17, 18);
        arrow.lineTo(21, 18);
        arrow.closeSubpath();
        p.setPen(QPen(Qt::black, 1.0));
        p.setBrush(Qt::white);
        p.drawPath(arrow);
    });
}

QIcon gradientViewIcon()
{
    return pictogram([](QPainter &p) {
        QLinearGradient gradient(0, 4, 0, 20);
        gradient.setColorAt(0, kitColor(QuorvelleColor::quorvelleLightBlueColor()));
        gradient.setColorAt(1, kitColor(QuorvelleColor::quorvelleBlueColor()));
        p.setPen(Qt::NoPen);
        p.setBrush(gradient);
        p.drawRect(QRectF(2, 4, 20, 16));
        p.setPen(QPen(Qt::white, 1.0));
        p.drawLine(QPointF(2, 4.5), QPointF(22, 4.5));
        p.setPen(QPen(kitColor(QuorvelleColor::quorvelleDarkGrayColor()), 1.0));
        p.drawLine(QPointF(2, 19.5), QPointF(22, 19.5));
    });
}

// A push button's DOM: the cell class and the button type that make its look.
QString buttonDom(const QString &displayName, const QString &objectName, const QString &cellClass,
                  const QString &text)
{
    return QStringLiteral(R"(<ui language="c++" displayname="%1">
 <widget class="Quorvelle::Button" name="%2">
  <property name="buttonType"><number>7</number></property>
  <property name="cellClass"><string notr="true">%3</string></property>
  <property name="text"><string>%4</string></property>
 </widget>
</ui>)")
        .arg(displayName, objectName, cellClass, text);
}

QString radioRow(const QString &name, const QString &text, bool checked)
{
    return QStringLiteral(R"(   <item>
    <widget class="Quorvelle::Button" name="%1">
     <property name="buttonType"><number>4</number></property>
     <property name="cellClass"><string notr="true">VXFlatRadioButtonCell</string></property>
     <property name="minimumSize"><size><width>0</width><height>26</height></size></property>
     <property name="checkable"><bool>true</bool></property>
     <property name="checked"><bool>%3</bool></property>
     <property name="text"><string>%2</string></property>
    </widget>
   </item>
)")
        .arg(name, text, checked ? QStringLiteral("true") : QStringLiteral("false"));
}

// A radio matrix with two rows to start from; its rows are the radio buttons laid out in it.
QString matrixDom(const QString &displayName, const QString &objectName, uint selectionStyle)
{
    return QStringLiteral(R"(<ui language="c++" displayname="%1">
 <widget class="VXMatrix" name="%2">
  <property name="selectionStyle"><number>%3</number></property>
  <layout class="QVBoxLayout" name="%2Layout">
   <property name="spacing"><number>2</number></property>
   <property name="leftMargin"><number>0</number></property>
   <property name="topMargin"><number>0</number></property>
   <property name="rightMargin"><number>0</number></property>
   <property name="bottomMargin"><number>0</number></property>
%4%5  </layout>
 </widget>
</ui>)")
        .arg(displayName, objectName, QString::number(selectionStyle),
             radioRow(objectName + QStringLiteral("First"), QStringLiteral("First choice"), true),
             radioRow(objectName + QStringLiteral("Second"), QStringLiteral("Second choice"),
                      false));
}

} // namespace

QuorvelleKitWidget::QuorvelleKitWidget(Description description, QObject *parent)
    : QObject(parent), m_description(std::move(description))
{
}

QString QuorvelleKitWidget::group() const
{
    return kGroup;
}

QuorvelleKitDesignerPlugin::QuorvelleKitDesignerPlugin(QObject *parent) : QObject(parent)
{
    const QString buttonHeader = QStringLiteral("Quorvelle/Widgets/Button.h");
    const auto button = [](QWidget *parent) -> QWidget * { return new Quorvelle::Button(parent); };
    const auto matrix = [](QWidget *parent) -> QWidget * { return new VXMatrix(parent); };
    // Designer shows one class's What's This for all its entries.
    const QString buttonWhatsThis = QStringLiteral(
        "A button of the Quorvelle kit. Its look is its cell, named by cellClass: "
        "VXFlatButtonCell (the flat button: a filled rounded shape in the kit's blue with a "
        "white title), VXFlatBorderedButtonCell (the bordered flat button: a blue outline and "
        "title on white, filled when pressed), VXFlatCheckboxButtonCell with buttonType 3 (the "
        "flat check box), VXFlatRadioButtonCell with buttonType 4 (a row of a radio matrix), "
        "VXButtonCell or VXGeneralButtonCell. The cell is made from buttonType, controlSize "
        "and bordered, which are therefore set before cellClass.");
    const QString matrixWhatsThis = QStringLiteral(
        "A radio group of the Quorvelle kit. Its rows are the radio buttons among its direct "
        "children, exclusive among themselves, in the order they stand from top to bottom; "
        "other children (such as a row's detail boxes) are no rows. Its selectionStyle is "
        "given to every flat radio cell of the group: 1 draws a rounded rectangle behind the "
        "selected row, 2 a tag pointing right, 0 nothing.");

    const QList<QuorvelleKitWidget::Description> descriptions = {
        {QStringLiteral("Quorvelle::Button"), buttonHeader,
         QStringLiteral("Flat button (Quorvelle Kit)"), buttonWhatsThis,
         buttonDom(QStringLiteral("Flat Button"), QStringLiteral("flatButton"),
                   QStringLiteral("VXFlatButtonCell"), QStringLiteral("Button")),
         buttonIcon(), false, button},
        {QStringLiteral("Quorvelle::Button"), buttonHeader,
         QStringLiteral("Bordered flat button (Quorvelle Kit)"), buttonWhatsThis,
         buttonDom(QStringLiteral("Bordered Flat Button"), QStringLiteral("borderedFlatButton"),
                   QStringLiteral("VXFlatBorderedButtonCell"), QStringLiteral("Button")),
         buttonIcon(), false, button},
        {QStringLiteral("Quorvelle::Button"), buttonHeader,
         QStringLiteral("Flat check box (Quorvelle Kit)"), buttonWhatsThis,
         QStringLiteral(R"(<ui language="c++" displayname="Flat Check Box">
 <widget class="Quorvelle::Button" name="flatCheckBox">
  <property name="buttonType"><number>3</number></property>
  <property name="cellClass"><string notr="true">VXFlatCheckboxButtonCell</string></property>
  <property name="checkable"><bool>true</bool></property>
  <property name="text"><string>Check box</string></property>
 </widget>
</ui>)"),
         buttonIcon(), false, button},
        {QStringLiteral("VXMatrix"), QStringLiteral("Quorvelle/Widgets/VXMatrix.h"),
         QStringLiteral("Radio matrix, rounded selection (Quorvelle Kit)"), matrixWhatsThis,
         matrixDom(QStringLiteral("Radio Matrix (Rounded Selection)"),
                   QStringLiteral("radioMatrix"), 1),
         matrixIcon(), true, matrix},
        {QStringLiteral("VXMatrix"), QStringLiteral("Quorvelle/Widgets/VXMatrix.h"),
         QStringLiteral("Radio matrix, tag selection (Quorvelle Kit)"), matrixWhatsThis,
         matrixDom(QStringLiteral("Radio Matrix (Tag Selection)"), QStringLiteral("tagRadioMatrix"),
                   2),
         matrixIcon(), true, matrix},
        {QStringLiteral("VXTrackingButton"), QStringLiteral("Quorvelle/Widgets/VXTrackingButton.h"),
         QStringLiteral("Hover-tracking button (Quorvelle Kit)"),
         QStringLiteral("A Quorvelle::Button that knows whether the pointer is over it, "
                        "hit-testing the pointer itself so a covered part or an inactive "
                        "window shows no hover. Its cellClass chooses the look; the bordered "
                        "flat cell shows the hover."),
         QStringLiteral(R"(<ui language="c++" displayname="Hover-Tracking Button">
 <widget class="VXTrackingButton" name="trackingButton">
  <property name="buttonType"><number>7</number></property>
  <property name="cellClass"><string notr="true">VXFlatBorderedButtonCell</string></property>
  <property name="text"><string>Button</string></property>
 </widget>
</ui>)"),
         trackingButtonIcon(), false,
         [](QWidget *parent) -> QWidget * { return new VXTrackingButton(parent); }},
        {QStringLiteral("VXGradientView"), QStringLiteral("Quorvelle/Widgets/VXGradientView.h"),
         QStringLiteral("Gradient view (Quorvelle Kit)"),
         QStringLiteral("A background band of the Quorvelle kit: a two-colour linear gradient "
                        "(a solid fill when both colours are equal) at gradientAngle degrees "
                        "counter-clockwise from the x axis (270: start colour at the top), "
                        "optionally with rounded corners, and a one-point line along the top "
                        "and the bottom edge. An invalid colour draws nothing."),
         QStringLiteral(R"(<ui language="c++" displayname="Gradient View">
 <widget class="VXGradientView" name="gradientView">
  <property name="geometry"><rect><x>0</x><y>0</y><width>200</width><height>60</height></rect></property>
  <property name="startGradientColor"><color><red>255</red><green>255</green><blue>255</blue></color></property>
  <property name="finishGradientColor"><color><red>228</red><green>233</green><blue>240</blue></color></property>
  <property name="gradientAngle"><double>270.0</double></property>
 </widget>
</ui>)"),
         gradientViewIcon(), true,
         [](QWidget *parent) -> QWidget * { return new VXGradientView(parent); }},
    };
    for (const QuorvelleKitWidget::Description &description : descriptions)
        m_widgets.append(new QuorvelleKitWidget(description, this));
}
