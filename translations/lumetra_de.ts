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
    <name>CompactMetricsCard</name>
    <message>
        <source>Metrics</source>
        <translation>Messwerte</translation>
    </message>
</context>
<context>
    <name>DiskCardView</name>
    <message>
        <source>Disks</source>
        <translation>Laufwerke</translation>
    </message>
    <message>
        <source>No volumes found</source>
        <translation>Keine Laufwerke gefunden</translation>
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
    <message>
        <source>No swap</source>
        <translation>Kein Swap</translation>
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
    <message>
        <source>Swap</source>
        <translation>Swap</translation>
    </message>
    <message>
        <source>Disk Read</source>
        <translation>Datenträger-Lesen</translation>
    </message>
    <message>
        <source>Disk Write</source>
        <translation>Datenträger-Schreiben</translation>
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
    <name>MetricPresentation</name>
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
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Swap</translation>
    </message>
    <message>
        <source>Disk Activity</source>
        <translation>Datenträgeraktivität</translation>
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
    <message>
        <source>Swap</source>
        <translation>Swap</translation>
    </message>
    <message>
        <source>Disk read</source>
        <translation>Datenträger lesen</translation>
    </message>
    <message>
        <source>Disk write</source>
        <translation>Datenträger schreiben</translation>
    </message>
</context>
<context>
    <name>NetworkCardView</name>
    <message>
        <source>Counted: %1</source>
        <translation>Gezählt: %1</translation>
    </message>
    <message>
        <source>Network</source>
        <translation type="vanished">Netzwerk</translation>
    </message>
    <message>
        <source>Download</source>
        <translation type="vanished">Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation type="vanished">Upload</translation>
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
    <name>TopApplicationOrder</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Speicher</translation>
    </message>
</context>
<context>
    <name>TopApplications</name>
    <message>
        <source>1 process</source>
        <translation>1 Prozess</translation>
    </message>
    <message numerus="yes">
        <source>%n processes</source>
        <translation>
            <numerusform>%n Prozess</numerusform>
            <numerusform>%n Prozesse</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of one core · %2 of the machine</source>
        <translation>%1 eines Kerns · %2 des Rechners</translation>
    </message>
    <message>
        <source>%1 CPU</source>
        <translation>%1 CPU</translation>
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
        <translation type="vanished">CPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation type="vanished">Speicher</translation>
    </message>
    <message>
        <source>Memory pressure</source>
        <translation type="vanished">Speicherdruck</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation type="vanished">Temperatur</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation type="vanished">nicht verfügbar</translation>
    </message>
    <message>
        <source>Thermal state</source>
        <translation type="vanished">Thermischer Zustand</translation>
    </message>
    <message>
        <source>Download</source>
        <translation type="vanished">Download</translation>
    </message>
    <message>
        <source>Upload</source>
        <translation type="vanished">Upload</translation>
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
    <name>lumetra::AdvancedSettingsView</name>
    <message>
        <source>Exact reading available</source>
        <translation>Exakter Messwert verfügbar</translation>
    </message>
    <message>
        <source>Thermal state only</source>
        <translation>Nur thermischer Zustand</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>Nicht verfügbar</translation>
    </message>
    <message>
        <source>Sensor Availability</source>
        <translation>Verfügbare Sensoren</translation>
    </message>
    <message>
        <source>Hardware Model</source>
        <translation>Hardwaremodell</translation>
    </message>
    <message>
        <source>Apple Silicon</source>
        <translation>Apple Silicon</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatur</translation>
    </message>
    <message>
        <source>Temperature Sensors</source>
        <translation>Temperatursensoren</translation>
    </message>
    <message>
        <source>Thermal State</source>
        <translation>Thermischer Zustand</translation>
    </message>
    <message>
        <source>Developer Diagnostics</source>
        <translation>Diagnose für Entwickler</translation>
    </message>
    <message>
        <source>Logs are written to the system journal under %1, categories: monitoring, sensors, ui, settings. View them with journalctl.</source>
        <translation>Protokolle werden im Systemjournal unter %1 geschrieben, Kategorien: monitoring, sensors, ui, settings. Anzeigen mit journalctl.</translation>
    </message>
    <message>
        <source>Reset Sensor Configuration</source>
        <translation>Sensorkonfiguration zurücksetzen</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Ja</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Nein</translation>
    </message>
    <message>
        <source>None found</source>
        <translation>Keine gefunden</translation>
    </message>
</context>
<context>
    <name>lumetra::AppearanceSettingsView</name>
    <message>
        <source>Window Appearance</source>
        <translation>Fensterdarstellung</translation>
    </message>
    <message>
        <source>Theme</source>
        <translation>Design</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Custom Appearance</source>
        <translation>Eigene Darstellung</translation>
    </message>
    <message>
        <source>Background Opacity</source>
        <translation>Deckkraft des Hintergrunds</translation>
    </message>
    <message>
        <source>Overlay Opacity</source>
        <translation>Deckkraft der Überlagerung</translation>
    </message>
    <message>
        <source>Blur Intensity</source>
        <translation>Unschärfe</translation>
    </message>
    <message>
        <source>Material</source>
        <translation>Material</translation>
    </message>
    <message>
        <source>Vibrancy</source>
        <translation>Lebendigkeit</translation>
    </message>
    <message>
        <source>Dashboard</source>
        <translation>Dashboard</translation>
    </message>
    <message>
        <source>Metric Card Style</source>
        <translation>Stil der Messkarten</translation>
    </message>
    <message>
        <source>Background Preview</source>
        <translation>Vorschau des Hintergrunds</translation>
    </message>
    <message>
        <source>Accessibility settings of the desktop (reduced transparency, increased contrast) take precedence over these choices.</source>
        <translation>Die Bedienungshilfen des Desktops (weniger Transparenz, mehr Kontrast) haben Vorrang vor diesen Einstellungen.</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>lumetra::BackgroundPreview</name>
    <message>
        <source>lumetra</source>
        <translation>lumetra</translation>
    </message>
    <message>
        <source>CPU 23%   Memory 61%   52°C</source>
        <translation>CPU 23%   Speicher 61%   52°C</translation>
    </message>
</context>
<context>
    <name>lumetra::DashboardView</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Support lumetra</source>
        <translation>lumetra unterstützen</translation>
    </message>
    <message>
        <source>Quit lumetra</source>
        <translation>lumetra beenden</translation>
    </message>
    <message>
        <source>CPU %1, memory %2</source>
        <translation>CPU %1, Speicher %2</translation>
    </message>
    <message>
        <source>lumetra</source>
        <translation>lumetra</translation>
    </message>
</context>
<context>
    <name>lumetra::GeneralSettingsView</name>
    <message>
        <source>Launch lumetra at login</source>
        <translation>lumetra bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Show welcome screen on next launch</source>
        <translation>Willkommensbildschirm beim nächsten Start zeigen</translation>
    </message>
    <message>
        <source>Automatically check for updates</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation>Nach Updates suchen …</translation>
    </message>
    <message>
        <source>Donations help improve lumetra — they fund development, testing, and debugging across new Linux and hardware releases.</source>
        <translation>Spenden helfen, lumetra zu verbessern – sie finanzieren Entwicklung, Tests und Fehlersuche für neue Linux- und Hardware-Versionen.</translation>
    </message>
    <message>
        <source>Support lumetra…</source>
        <translation>lumetra unterstützen …</translation>
    </message>
    <message>
        <source>Reset Settings…</source>
        <translation>Einstellungen zurücksetzen …</translation>
    </message>
</context>
<context>
    <name>lumetra::GlanceCard</name>
    <message>
        <source>lumetra</source>
        <translation type="vanished">lumetra</translation>
    </message>
    <message>
        <source>CPU %1   Memory %2</source>
        <translation type="vanished">CPU %1   Speicher %2</translation>
    </message>
</context>
<context>
    <name>lumetra::LumetraApp</name>
    <message>
        <source>lumetra: no panel here can show lumetra&apos;s item (no StatusNotifierWatcher on the session bus and no system tray); run lumetra again to open the dashboard
</source>
        <translation>lumetra: Keine Leiste kann hier das Symbol von lumetra zeigen (kein StatusNotifierWatcher auf dem Sitzungsbus und kein Systembereich); starten Sie lumetra erneut, um das Dashboard zu öffnen
</translation>
    </message>
    <message>
        <source>lumetra: the session bus went away; exiting
</source>
        <translation>lumetra: Der Sitzungsbus ist weg; lumetra wird beendet
</translation>
    </message>
</context>
<context>
    <name>lumetra::MenuBarSettingsView</name>
    <message>
        <source>52°</source>
        <translation>52°</translation>
    </message>
    <message>
        <source>52°C</source>
        <translation>52°C</translation>
    </message>
    <message>
        <source>CPU 52°C</source>
        <translation>CPU 52°C</translation>
    </message>
    <message>
        <source>Temp 52°C</source>
        <translation>Temp. 52°C</translation>
    </message>
    <message>
        <source>Metrics</source>
        <translation>Messwerte</translation>
    </message>
    <message>
        <source>Order</source>
        <translation>Reihenfolge</translation>
    </message>
    <message>
        <source>Drag to reorder how metrics appear in the menu bar.</source>
        <translation>Ziehen, um die Reihenfolge der Messwerte in der Menüleiste zu ändern.</translation>
    </message>
    <message>
        <source>Menu Bar Style</source>
        <translation>Stil der Menüleiste</translation>
    </message>
    <message>
        <source>Separator</source>
        <translation>Trennzeichen</translation>
    </message>
    <message>
        <source>Format</source>
        <translation>Format</translation>
    </message>
    <message>
        <source>Memory format</source>
        <translation>Speicherformat</translation>
    </message>
    <message>
        <source>Temperature format</source>
        <translation>Temperaturformat</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Alt+Up and Alt+Down move the selected metric.</source>
        <translation>Alt+Pfeil nach oben und Alt+Pfeil nach unten verschieben den gewählten Messwert.</translation>
    </message>
</context>
<context>
    <name>lumetra::MonitoringSettingsView</name>
    <message>
        <source>Update interval</source>
        <translation>Aktualisierungsintervall</translation>
    </message>
    <message>
        <source>Update Interval</source>
        <translation>Aktualisierungsintervall</translation>
    </message>
    <message>
        <source>Temperature interval</source>
        <translation>Temperaturintervall</translation>
    </message>
    <message>
        <source>Temperature Interval</source>
        <translation>Temperaturintervall</translation>
    </message>
    <message>
        <source>CPU, memory and network are sampled at the update interval. Temperature uses its own, slightly less frequent interval since reading it is more expensive.</source>
        <translation>CPU, Speicher und Netzwerk werden im Aktualisierungsintervall gemessen. Die Temperatur hat ein eigenes, etwas selteneres Intervall, weil ihr Auslesen aufwendiger ist.</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Count only physical network interfaces</source>
        <translation>Nur physische Netzwerkschnittstellen zählen</translation>
    </message>
    <message>
        <source>Leaves out bridges, VPN tunnels and the virtual links of containers and virtual machines, so their traffic is not counted twice.</source>
        <translation>Lässt Bridges, VPN-Tunnel und die virtuellen Verbindungen von Containern und virtuellen Maschinen aus, damit ihr Datenverkehr nicht doppelt zählt.</translation>
    </message>
</context>
<context>
    <name>lumetra::SettingsView</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Menu Bar</source>
        <translation>Menüleiste</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Darstellung</translation>
    </message>
    <message>
        <source>Monitoring</source>
        <translation>Messung</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
    </message>
</context>
<context>
    <name>lumetra::StatusItemController</name>
    <message>
        <source>Show Dashboard</source>
        <translation>Dashboard anzeigen</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen…</translation>
    </message>
    <message>
        <source>Quit lumetra</source>
        <translation>lumetra beenden</translation>
    </message>
</context>
<context>
    <name>lumetra::SupportLumetraView</name>
    <message>
        <source>Support lumetra</source>
        <translation>lumetra unterstützen</translation>
    </message>
    <message>
        <source>lumetra is free and built to stay lightweight. Donations fund development, testing, and debugging across new Linux and Apple Silicon releases.</source>
        <translation>lumetra ist kostenlos und soll leichtgewichtig bleiben. Spenden finanzieren Entwicklung, Tests und Fehlersuche für neue Linux- und Apple-Silicon-Versionen.</translation>
    </message>
    <message>
        <source>Don&apos;t show again</source>
        <translation>Nicht mehr zeigen</translation>
    </message>
    <message>
        <source>Not Now</source>
        <translation>Nicht jetzt</translation>
    </message>
</context>
<context>
    <name>lumetra::SupportWindowController</name>
    <message>
        <source>Support lumetra</source>
        <translation>lumetra unterstützen</translation>
    </message>
</context>
<context>
    <name>lumetra::TopApplicationsSection</name>
    <message>
        <source>Top</source>
        <translation>Top</translation>
    </message>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>Speicher</translation>
    </message>
    <message>
        <source>Top applications by CPU</source>
        <translation>Top-Anwendungen nach CPU</translation>
    </message>
    <message>
        <source>Top applications by memory</source>
        <translation>Top-Anwendungen nach Speicher</translation>
    </message>
    <message>
        <source>Open System Monitor</source>
        <translation>Systemüberwachung öffnen</translation>
    </message>
    <message>
        <source>Actions for %1</source>
        <translation>Aktionen für %1</translation>
    </message>
    <message>
        <source>Reading processes…</source>
        <translation>Prozesse werden gelesen …</translation>
    </message>
    <message>
        <source>Only your own processes are visible</source>
        <translation>Nur Ihre eigenen Prozesse sind sichtbar</translation>
    </message>
    <message>
        <source>Resident memory: %1</source>
        <translation>Belegter Arbeitsspeicher: %1</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>Force Quit</source>
        <translation>Sofort beenden</translation>
    </message>
    <message>
        <source>Only your own processes can be stopped</source>
        <translation>Nur Ihre eigenen Prozesse können beendet werden</translation>
    </message>
    <message>
        <source>Force Quit “%1” (%2)?</source>
        <translation>„%1“ (%2) sofort beenden?</translation>
    </message>
    <message>
        <source>Quit “%1” (%2)?</source>
        <translation>„%1“ (%2) beenden?</translation>
    </message>
    <message>
        <source>Each process is stopped at once; unsaved work is lost.</source>
        <translation>Jeder Prozess wird sofort angehalten; nicht gespeicherte Arbeit geht verloren.</translation>
    </message>
    <message>
        <source>Each process is asked to quit and may save its work first.</source>
        <translation>Jeder Prozess wird gebeten, sich zu beenden, und kann seine Arbeit vorher sichern.</translation>
    </message>
    <message>
        <source>%1 had already quit</source>
        <translation>%1 war schon beendet</translation>
    </message>
    <message>
        <source>%1: not permitted to stop %2</source>
        <translation>%1: keine Berechtigung, %2 zu beenden</translation>
    </message>
    <message>
        <source>%1: %2 could not be stopped</source>
        <translation>%1: %2 konnten nicht beendet werden</translation>
    </message>
    <message>
        <source>% of one core</source>
        <translation>% eines Kerns</translation>
    </message>
    <message>
        <source>resident</source>
        <translation>belegt</translation>
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
<context>
    <name>lumetra::WelcomeView</name>
    <message>
        <source>Welcome to lumetra</source>
        <translation>Willkommen bei lumetra</translation>
    </message>
    <message>
        <source>A lightweight system monitor that lives in your menu bar.</source>
        <translation>Ein leichtgewichtiger Systemmonitor, der in Ihrer Menüleiste wohnt.</translation>
    </message>
    <message>
        <source>Get Started</source>
        <translation>Los geht’s</translation>
    </message>
    <message>
        <source>Choose what to show</source>
        <translation>Wählen Sie, was angezeigt wird</translation>
    </message>
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
        <source>Network</source>
        <translation>Netzwerk</translation>
    </message>
    <message>
        <source>Launch lumetra at login</source>
        <translation>lumetra bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Swap</translation>
    </message>
    <message>
        <source>Disk Activity</source>
        <translation>Datenträgeraktivität</translation>
    </message>
</context>
</TS>
