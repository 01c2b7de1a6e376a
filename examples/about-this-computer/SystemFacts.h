#pragma once

#include <QList>
#include <QString>

// What the window tells about the machine, asked of the kit's system information once.
struct SystemFact
{
    QString label;
    QString value;
};

struct SystemFactsSection
{
    QString title;
    QList<SystemFact> facts;
};

struct SystemFacts
{
    // The computer's name, or a neutral stand-in when the system tells none.
    QString computerName;
    // The operating system's own name for itself ("Debian GNU/Linux 12 (bookworm)").
    QString systemName;
    QList<SystemFactsSection> sections;

    static SystemFacts collect();
    // Every section as plain text, for the clipboard.
    QString toText() const;
};
