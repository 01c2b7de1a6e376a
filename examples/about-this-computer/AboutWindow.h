#pragma once

#include "SystemFacts.h"

#include <QWidget>

class QStandardItemModel;
class QTableView;
class VXMatrix;

// "About this computer": a gradient header naming the machine, a radio matrix of sections
// on the left, the chosen section's facts in a list with the kit's alternating rows, and a
// bordered "Copy" and a flat "Close" button.
class AboutWindow : public QWidget
{
public:
    explicit AboutWindow(SystemFacts facts, QWidget *parent = nullptr);

    // Shows section `index` of the facts (the matrix row of that index is selected).
    void showSection(int index);

private:
    QWidget *makeHeader();
    QWidget *makeBody();
    QWidget *makeFooter();

    SystemFacts m_facts;
    VXMatrix *m_sections = nullptr;
    QStandardItemModel *m_model = nullptr;
    QTableView *m_list = nullptr;
};
