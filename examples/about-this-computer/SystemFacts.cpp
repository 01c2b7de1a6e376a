#include "SystemFacts.h"

#include <Quorvelle/Foundation/QuorvelleString.h>
#include <Quorvelle/SystemInformation/VXSystemInformation.h>

#include <QCoreApplication>
#include <QLocale>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("SystemFacts", text);
}

// The kit answers "not known" with a null or empty text; the window says so in words.
QString orUnknown(const QString &value)
{
    const QString trimmed = value.trimmed();
    return trimmed.isEmpty() ? tr("Unknown") : trimmed;
}

QString processorText()
{
    const std::uint32_t count = VXSystemInformation::countProcessors();
    const std::int64_t megahertz = VXSystemInformation::processorClockSpeedInMHz();
    const QLocale locale;
    if (count == 0 && megahertz <= 0)
        return tr("Unknown");
    if (megahertz <= 0)
        return tr("%1 cores").arg(count);
    const QString speed = locale.toString(double(megahertz) / 1000.0, 'f', 2);
    if (count == 0)
        return tr("%1 GHz").arg(speed);
    return tr("%1 cores at %2 GHz").arg(count).arg(speed);
}

} // namespace

SystemFacts SystemFacts::collect()
{
    namespace SI = VXSystemInformation;
    SystemFacts facts;
    facts.computerName = SI::computerName().trimmed();
    if (facts.computerName.isEmpty())
        facts.computerName = tr("This computer");
    facts.systemName = SI::humanReadableSystemVersionString().trimmed();
    if (facts.systemName.isEmpty())
        facts.systemName = SI::operatingSystemString();

    const std::uint64_t disk = SI::hddSize();
    const QString kernel = SI::systemVersionString();
    // The firmware's model name; the report tool's answer would say "Mac" where it knows
    // none, which is no answer on this system.
    QString model = SI::modelIdentifier();
    if (model.trimmed().isEmpty())
        model = SI::machineType();

    facts.sections = {
        {tr("Overview"),
         {
             {tr("Computer name"), facts.computerName},
             {tr("Operating system"), orUnknown(facts.systemName)},
             {tr("Kernel"), kernel.isEmpty() ? orUnknown(SI::operatingSystemString())
                                             : SI::operatingSystemString() + u' ' + kernel},
             {tr("Processor"), processorText()},
             {tr("Memory"), orUnknown(SI::humanReadableRAMSizeString())},
             {tr("Startup disk"), disk ? QuorvelleString::stringWithFileSize(disk) : tr("Unknown")},
         }},
        {tr("Hardware"),
         {
             {tr("Model"), orUnknown(model)},
             {tr("Serial number"), orUnknown(SI::computerSerialNumber())},
             {tr("Processor cores"),
              SI::countProcessors() ? QString::number(SI::countProcessors()) : tr("Unknown")},
             {tr("Processor speed"), SI::processorClockSpeedInMHz() > 0
                                         ? tr("%1 MHz").arg(SI::processorClockSpeedInMHz())
                                         : tr("Unknown")},
             {tr("64-bit capable"), SI::is64BitCapable() ? tr("Yes") : tr("No")},
             {tr("Hardware address"), orUnknown(SI::macAddressString())},
         }},
        {tr("Software"),
         {
             {tr("Web browser"), orUnknown(SI::defaultWebBrowser())},
             {tr("Applications"), QLocale().toString(qlonglong(SI::allApplicationsPaths().size()))},
             {tr("Quorvelle Kit"), QStringLiteral(ABOUT_KIT_VERSION)},
             {tr("Qt"), QString::fromLatin1(qVersion())},
         }},
    };
    return facts;
}

QString SystemFacts::toText() const
{
    QString text = computerName + QStringLiteral("\n");
    for (const SystemFactsSection &section : sections) {
        text += u'\n' + section.title + u'\n';
        for (const SystemFact &fact : section.facts)
            text += QStringLiteral("  %1: %2\n").arg(fact.label, fact.value);
    }
    return text;
}
