<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AppearanceMode</name>
    <message>
        <source>Solid</source>
        <translation>Deckend</translation>
    </message>
    <message>
        <source>Nearly opaque background for maximum legibility.</source>
        <translation>Fast deckender Hintergrund für beste Lesbarkeit.</translation>
    </message>
    <message>
        <source>Subtle</source>
        <translation>Dezent</translation>
    </message>
    <message>
        <source>A light touch of transparency and blur.</source>
        <translation>Ein Hauch von Transparenz und Unschärfe.</translation>
    </message>
    <message>
        <source>Translucent</source>
        <translation>Durchscheinend</translation>
    </message>
    <message>
        <source>Noticeably see-through with a medium blur.</source>
        <translation>Deutlich durchsichtig mit mittlerer Unschärfe.</translation>
    </message>
    <message>
        <source>Glass</source>
        <translation>Glas</translation>
    </message>
    <message>
        <source>Maximum glass effect, macOS-style vibrancy.</source>
        <translation>Stärkster Glaseffekt, lebendig wie unter macOS.</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Benutzerdefiniert</translation>
    </message>
    <message>
        <source>Full manual control over opacity and blur.</source>
        <translation>Volle Kontrolle über Deckkraft und Unschärfe.</translation>
    </message>
</context>
<context>
    <name>MemoryDisplayFormat</name>
    <message>
        <source>Percentage only</source>
        <translation>Nur Prozent</translation>
    </message>
    <message>
        <source>Used only</source>
        <translation>Nur belegt</translation>
    </message>
    <message>
        <source>Used / Total</source>
        <translation>Belegt / Gesamt</translation>
    </message>
    <message>
        <source>Both</source>
        <translation>Beides</translation>
    </message>
</context>
<context>
    <name>MenuBarDisplayStyle</name>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Icon &amp; Text</source>
        <translation>Symbol &amp; Text</translation>
    </message>
    <message>
        <source>Compact Graph</source>
        <translation>Kompakter Graph</translation>
    </message>
    <message>
        <source>Mini Bar</source>
        <translation>Mini-Balken</translation>
    </message>
</context>
<context>
    <name>MenuBarLabel</name>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
</context>
<context>
    <name>MenuBarMetric</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
</context>
<context>
    <name>MenuBarSeparator</name>
    <message>
        <source>Space</source>
        <translation>Leerzeichen</translation>
    </message>
    <message>
        <source>Dot</source>
        <translation>Punkt</translation>
    </message>
    <message>
        <source>Vertical Bar</source>
        <translation>Senkrechter Strich</translation>
    </message>
    <message>
        <source>Bullet</source>
        <translation>Aufzählungspunkt</translation>
    </message>
</context>
<context>
    <name>MetricCardStyle</name>
    <message>
        <source>Classic</source>
        <translation>Klassisch</translation>
    </message>
    <message>
        <source>Ring</source>
        <translation>Ring</translation>
    </message>
    <message>
        <source>Compact Rows</source>
        <translation>Kompakte Zeilen</translation>
    </message>
    <message>
        <source>Sparkline Area</source>
        <translation>Verlaufsfläche</translation>
    </message>
    <message>
        <source>Grid</source>
        <translation>Raster</translation>
    </message>
</context>
<context>
    <name>MetricsTooltip</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>Memory pressure</source>
        <translation>Speicherdruck</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>nicht verfügbar</translation>
    </message>
    <message>
        <source>Thermal state</source>
        <translation>Thermischer Zustand</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>Disk</source>
        <translation>Datenträger</translation>
    </message>
    <message>
        <source>%1 free of %2</source>
        <translation>%1 frei von %2</translation>
    </message>
</context>
<context>
    <name>TemperatureInterval</name>
    <message>
        <source>1 s</source>
        <translation>1 s</translation>
    </message>
    <message>
        <source>2 s</source>
        <translation>2 s</translation>
    </message>
    <message>
        <source>5 s</source>
        <translation>5 s</translation>
    </message>
    <message>
        <source>10 s</source>
        <translation>10 s</translation>
    </message>
</context>
<context>
    <name>ThemePreference</name>
    <message>
        <source>System</source>
        <translation>System</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
</context>
<context>
    <name>ThermalState</name>
    <message>
        <source>Nominal</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>Fair</source>
        <translation>Erhöht</translation>
    </message>
    <message>
        <source>Serious</source>
        <translation>Ernst</translation>
    </message>
    <message>
        <source>thermalState.critical</source>
        <extracomment>English: Critical</extracomment>
        <translation>Kritisch</translation>
    </message>
</context>
<context>
    <name>UpdateInterval</name>
    <message>
        <source>0.5 s</source>
        <translation>0,5 s</translation>
    </message>
    <message>
        <source>1 s</source>
        <translation>1 s</translation>
    </message>
    <message>
        <source>2 s</source>
        <translation>2 s</translation>
    </message>
    <message>
        <source>5 s</source>
        <translation>5 s</translation>
    </message>
</context>
<context>
    <name>UpdateService</name>
    <message>
        <source>update.downloadButton</source>
        <extracomment>English: Download</extracomment>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>A New Version is Available</source>
        <translation>Eine neue Version ist verfügbar</translation>
    </message>
    <message>
        <source>lumetra %1 is available — you have %2.</source>
        <translation>lumetra %1 ist verfügbar – Sie haben %2.</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>You&apos;re Up to Date</source>
        <translation>Sie sind auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>lumetra %1 is the latest version.</source>
        <translation>lumetra %1 ist die neueste Version.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Couldn&apos;t Check for Updates</source>
        <translation>Suche nach Updates fehlgeschlagen</translation>
    </message>
    <message>
        <source>Make sure you&apos;re connected to the internet and try again.</source>
        <translation>Prüfen Sie Ihre Internetverbindung und versuchen Sie es erneut.</translation>
    </message>
</context>
<context>
    <name>VisualEffectMaterial</name>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Popover</source>
        <translation>Popover</translation>
    </message>
    <message>
        <source>Sidebar</source>
        <translation>Seitenleiste</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>Menü</translation>
    </message>
</context>
<context>
    <name>lumetra</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>Memory pressure</source>
        <translation>Speicherdruck</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>nicht verfügbar</translation>
    </message>
    <message>
        <source>Thermal state</source>
        <translation>Thermischer Zustand</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>Disk</source>
        <translation>Datenträger</translation>
    </message>
    <message>
        <source>%1 free of %2</source>
        <translation>%1 frei von %2</translation>
    </message>
</context>
<context>
    <name>lumetra::GlanceCard</name>
    <message>
        <source>lumetra</source>
        <translation>lumetra</translation>
    </message>
    <message>
        <source>CPU %1   Memory %2</source>
        <translation>CPU %1   Speicher %2</translation>
    </message>
</context>
<context>
    <name>lumetra::UpdateAlert</name>
    <message>
        <source>A New Version is Available</source>
        <translation>Eine neue Version ist verfügbar</translation>
    </message>
    <message>
        <source>lumetra %1 is available — you have %2.</source>
        <translation>lumetra %1 ist verfügbar – Sie haben %2.</translation>
    </message>
    <message>
        <source>Later</source>
        <translation>Später</translation>
    </message>
    <message>
        <source>You&apos;re Up to Date</source>
        <translation>Sie sind auf dem neuesten Stand</translation>
    </message>
    <message>
        <source>lumetra %1 is the latest version.</source>
        <translation>lumetra %1 ist die neueste Version.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Couldn&apos;t Check for Updates</source>
        <translation>Suche nach Updates fehlgeschlagen</translation>
    </message>
    <message>
        <source>Make sure you&apos;re connected to the internet and try again.</source>
        <translation>Prüfen Sie Ihre Internetverbindung und versuchen Sie es erneut.</translation>
    </message>
</context>
</TS>
