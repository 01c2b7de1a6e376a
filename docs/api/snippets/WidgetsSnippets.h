// The Widgets guide's examples as functions, so tst_docsnippets can run them.
#pragma once

#include <Quorvelle/Widgets/VXAttributedString.h>

#include <QString>

class QLabel;
class QTableView;
class QWidget;
class VXGradientView;
class VXMatrix;
namespace Quorvelle {
class Button;
}

namespace Snippets {

Quorvelle::Button *flatButton(QWidget *parent);
Quorvelle::Button *borderedButton(QWidget *parent);
Quorvelle::Button *checkBox(QWidget *parent);
VXMatrix *radioMatrix(QWidget *parent);
void styleLabel(QLabel *label);
VXAttributedString removalNotice(const QString &productName);
QWidget *attributedLabel(const VXAttributedString &text, QWidget *parent);
VXGradientView *gradientHeader(QWidget *parent);
QTableView *alternatingTable(QWidget *parent);

} // namespace Snippets
