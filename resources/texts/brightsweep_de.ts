<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="ABOUT_TEXT"><translation>Findet, was Ihre Datenträger füllt, zeigt es, bevor es verschwindet, und behält den freien Platz jedes Datenträgers im Auge.</translation></message>
    <message id="ABOUT_TITLE"><translation>Über Brightsweep</translation></message>
    <message id="ABOUT_VERSION"><translation>Version %1</translation></message>
    <message id="CANCEL"><translation>Abbrechen</translation></message>
    <message id="CANNOT_OPEN_FINDER"><translation>Dieser Datenträger lässt sich nicht in der Dateiverwaltung öffnen.</translation></message>
    <message id="CLEAN_FILES_COUNT"><translation>Bereinigte Objekte:</translation></message>
    <message id="CLEAN_FILES_SIZE"><translation>Freigegebener Platz:</translation></message>
    <message id="CLEAN_OUTDATED"><translation>Seit dieser Suche hat eine Schnellreinigung Objekte entfernt.</translation></message>
    <message id="CLOSE"><translation>Schließen</translation></message>
    <message id="DESC_CLEAN_DOWNLOADS"><translation>Alles in Ihrem Download-Ordner. Sehen Sie ihn vorher durch: Es sind Ihre eigenen Dateien.</translation></message>
    <message id="DESC_CLEAN_SYS_CACHES"><translation>Pakete und Daten, die das System aufhebt, um sie nicht noch einmal herunterladen oder berechnen zu müssen. Bei Bedarf holt oder erzeugt es sie neu.</translation></message>
    <message id="DESC_CLEAN_SYS_LOGS"><translation>Aufzeichnungen von Installationen, Aktualisierungen und Abstürzen. Sie helfen nur, früheren Störungen nachzugehen.</translation></message>
    <message id="DESC_CLEAN_TRASH"><translation>Dateien, die Sie weggeworfen haben, auf allen Datenträgern. Einmal bereinigt, lassen sie sich nicht wiederherstellen.</translation></message>
    <message id="DESC_CLEAN_USR_CACHES"><translation>Was Ihre Programme aufheben, um schneller zu sein. Sie bauen es wieder auf; der erste Start danach kann etwas länger dauern.</translation></message>
    <message id="DESC_CLEAN_USR_LOGS"><translation>Aufzeichnungen Ihrer Programme über ihre eigene Arbeit. Sie helfen nur, früheren Störungen nachzugehen.</translation></message>
    <message id="DESC_FREESPACE_MONITOR"><translation>Behält den freien Platz jedes Datenträgers im Auge und warnt, bevor einer voll ist.</translation></message>
    <message id="DESC_UNINSTALL"><translation>Entfernt Programme samt den Einstellungen, Caches und Protokollen, die sie hinterlassen.</translation></message>
    <message id="DISK_IMAGE"><translation>Datenträgerabbilder</translation></message>
    <message id="DRIVE_STAYS"><translation>Das Laufwerk konnte nicht freigegeben werden.</translation></message>
    <message id="EMPTY_DISK_USAGE"><translation>Zeichnet als Ringe, welche Ordner einen Datenträger füllen, bis zur letzten Datei.</translation></message>
    <message id="EMPTY_DUPLICATES"><translation>Findet Dateien mit gleichem Inhalt, wie sie auch heißen und wo sie auch liegen.</translation></message>
    <message id="EMPTY_LOGIN_ITEMS"><translation>Zeigt, was mit Ihrer Sitzung startet, und lässt Sie etwas hinzufügen oder entfernen.</translation></message>
    <message id="EMPTY_MEMORY"><translation>Gibt Speicher, den Programme nicht mehr nutzen, denen zurück, die ihn brauchen.</translation></message>
    <message id="EMPTY_PREFERENCES"><translation>Legt fest, was bereinigt wird, wann Brightsweep warnt und wie es startet.</translation></message>
    <message id="EMPTY_SCAN"><translation>Findet Caches, Protokolle, Papierkorb und alte Downloads und zeigt jedes Objekt, bevor etwas entfernt wird.</translation></message>
    <message id="EMPTY_UNINSTALL"><translation>Entfernt ein Programm samt den Einstellungen, Caches und Protokollen, die es hinterlässt.</translation></message>
    <message id="EXTERNAL_STORAGE"><translation>Externe Laufwerke</translation></message>
    <message id="FREE_MEMORY"><translation>Arbeitsspeicher</translation></message>
    <message id="FREE_MEMORY_NOW"><translation>Speicher freigeben</translation></message>
    <message id="LEFT_OUT_FOREIGN"><translation>%1 wird nicht bereinigt, da es jemand anderem gehört.</translation></message>
    <message id="LEFT_OUT_KEPT"><translation>%1 wird nicht bereinigt, da es mehr als seine Kategorie enthält.</translation></message>
    <message id="LEFT_OUT_TOP"><translation>%1 wird nicht bereinigt, da dort ein Datenträger beginnt.</translation></message>
    <message id="LOCAL_STORAGE"><translation>Interne Laufwerke</translation></message>
    <message id="NETWOR_STORAGE"><translation>Netzlaufwerke</translation></message>
    <message id="NOTHING_RELEASED"><translation>Kein Speicher ließ sich freigeben.</translation></message>
    <message id="NO_FOLDER_CONTENT"><translation>Es sind keine Ordner zum Bereinigen ausgewählt. Wählen Sie sie in den Einstellungen aus.</translation></message>
    <message id="NO_HAVE_REMOVABLE"><translation>Es gibt nichts auszuwerfen.</translation></message>
    <message id="OK"><translation>OK</translation></message>
    <message id="OPEN_APPLICATIONS"><translation>Programme öffnen</translation></message>
    <message id="OPEN_AUTOSTART"><translation>Autostart-Ordner öffnen</translation></message>
    <message id="OPEN_HOME"><translation>Persönlichen Ordner öffnen</translation></message>
    <message id="QUICK_CLEAN"><translation>Bereinigen</translation></message>
    <message id="QUICK_CLEAN_ASK"><translation>Alles in diesen Ordnern wird entfernt.</translation></message>
    <message id="REMOVAL_NO_LOCK"><translation>Ob gerade anderes entfernt wird, lässt sich nicht feststellen; deshalb wird jetzt nichts entfernt.</translation></message>
    <message id="REMOVAL_RUNS"><translation>Es wird bereits etwas entfernt (%1, Prozess %2). Warten Sie, bis das beendet ist.</translation></message>
    <message id="ROW_WARNS"><translation>Knapp</translation></message>
    <message id="SHOW_LOG"><translation>Protokoll zeigen</translation></message>
    <message id="SHOW_VOLUMES"><translation>Datenträger zeigen</translation></message>
    <message id="STAYED_IN_USE" numerus="yes"><translation><numerusform>%n Objekt wird benutzt</numerusform><numerusform>%n Objekte werden benutzt</numerusform></translation></message>
    <message id="STAYED_OTHER" numerus="yes"><translation><numerusform>%n Objekt ließ sich nicht entfernen</numerusform><numerusform>%n Objekte ließen sich nicht entfernen</numerusform></translation></message>
    <message id="STAYED_READ_ONLY" numerus="yes"><translation><numerusform>%n Objekt liegt auf einem schreibgeschützten Datenträger</numerusform><numerusform>%n Objekte liegen auf einem schreibgeschützten Datenträger</numerusform></translation></message>
    <message id="STAYED_RIGHTS" numerus="yes"><translation><numerusform>%n Objekt braucht Administratorrechte</numerusform><numerusform>%n Objekte brauchen Administratorrechte</numerusform></translation></message>
    <message id="SUPER_DRIVER"><translation>Optische Laufwerke</translation></message>
    <message id="TITLE_CLEAN_DOWNLOADS"><translation>Downloads</translation></message>
    <message id="TITLE_CLEAN_SYS_CACHES"><translation>System-Caches</translation></message>
    <message id="TITLE_CLEAN_SYS_LOGS"><translation>Systemprotokolle</translation></message>
    <message id="TITLE_CLEAN_SYS_MYMAC"><translation>Mein Computer</translation></message>
    <message id="TITLE_CLEAN_TRASH"><translation>Papierkorb</translation></message>
    <message id="TITLE_CLEAN_USR_CACHES"><translation>Benutzer-Caches</translation></message>
    <message id="TITLE_CLEAN_USR_LOGS"><translation>Benutzerprotokolle</translation></message>
    <message id="TITLE_FREESPACE_MONITOR"><translation>Freien Platz überwachen</translation></message>
    <message id="TITLE_UNINSTALL"><translation>Programme deinstallieren</translation></message>
    <message id="VOLUME_UNMOUNTED"><translation>%1 ist ausgehängt.</translation></message>
</context>
</TS>
