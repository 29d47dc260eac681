<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="%@ freed."><translation>%1 freigegeben.</translation></message>
    <message id="%@ is cleaned"><translation>%1 bereinigt</translation></message>
    <message id="%@ is mounted successfully!"><translation>%1 wurde eingehängt.</translation></message>
    <message id="%@ is unmounted successfully!"><translation>%1 wurde ausgehängt.</translation></message>
    <message id="%@ space has been recovered since last clean %@. The capacity of startup disk is %@, and %@ is available."><translation>%1 Platz wurden seit der letzten Bereinigung am %2 zurückgewonnen. Der Startdatenträger fasst %3, davon sind %4 verfügbar.</translation></message>
    <message id="%d items are selected."><translation>%1 Objekte sind ausgewählt.</translation></message>
    <message id="%d of %d selected, %@ will free up."><translation>%1 von %2 ausgewählt, %3 werden frei.</translation></message>
    <message id="%d of %d selected."><translation>%1 von %2 ausgewählt.</translation></message>
    <message id="%lu files in %@."><translation>%1 Dateien in %2.</translation></message>
    <message id="ABOUT_CHART"><translation>Ringdiagramm mit %1</translation></message>
    <message id="ABOUT_TEXT"><translation>Findet, was Ihre Datenträger füllt, zeigt es, bevor es verschwindet, und behält den freien Platz jedes Datenträgers im Auge.</translation></message>
    <message id="ABOUT_TITLE"><translation>Über Brightsweep</translation></message>
    <message id="ABOUT_VERSION"><translation>Version %1</translation></message>
    <message id="ALARM_QUIET"><translation>Zurzeit sind %1 % frei: keine Warnung.</translation></message>
    <message id="ALARM_WARNS"><translation>Zurzeit sind %1 % frei: Es wird gewarnt.</translation></message>
    <message id="AVAILABLE_BEFORE_AFTER"><translation>Für Programme verfügbar: vorher %1, jetzt %2. Dateien werden wieder vom Datenträger gelesen.</translation></message>
    <message id="AVAILABLE_UNCHANGED"><translation>Für Programme verfügbar: %1, wie zuvor. Dateien werden wieder vom Datenträger gelesen.</translation></message>
    <message id="About"><translation>Über</translation></message>
    <message id="Add login item"><translation>Anmeldeobjekt hinzufügen</translation></message>
    <message id="All"><translation>Alle</translation></message>
    <message id="All Applications"><translation>Alle Programme</translation></message>
    <message id="Applications"><translation>Programme</translation></message>
    <message id="Archives"><translation>Archive</translation></message>
    <message id="Are you sure you want to continue?"><translation>Möchten Sie wirklich fortfahren?</translation></message>
    <message id="Are you sure you want to delete all the duplicate files?"><translation>Wollen Sie wirklich alle Dateien dieser Gruppe entfernen?</translation></message>
    <message id="BACK"><translation>Zurück</translation></message>
    <message id="BADGE_RUNNING"><translation>läuft</translation></message>
    <message id="BADGE_SYSTEM"><translation>Teil des Systems</translation></message>
    <message id="CANCEL"><translation>Abbrechen</translation></message>
    <message id="CANNOT_EJECT"><translation>%1 lässt sich nicht auswerfen.</translation></message>
    <message id="CANNOT_OPEN_FINDER"><translation>Dieser Datenträger lässt sich nicht in der Dateiverwaltung öffnen.</translation></message>
    <message id="CAPACITY"><translation>Der Startdatenträger fasst %1, davon sind %2 verfügbar.</translation></message>
    <message id="CATEGORIES"><translation>Kategorien</translation></message>
    <message id="CATEGORY_EMPTY"><translation>Nichts vorhanden</translation></message>
    <message id="CATEGORY_EMPTY_TEXT"><translation>Diese Kategorie enthält nichts, das entfernt werden könnte.</translation></message>
    <message id="CHOOSE"><translation>Wählen</translation></message>
    <message id="CHOOSE_FOLDER"><translation>Ordner wählen …</translation></message>
    <message id="CHOOSE_PATH"><translation>Ordner zum Durchsuchen wählen</translation></message>
    <message id="CLEAN"><translation>Bereinigen</translation></message>
    <message id="CLEAN_FILES_COUNT"><translation>Bereinigte Objekte:</translation></message>
    <message id="CLEAN_FILES_SIZE"><translation>Freigegebener Platz:</translation></message>
    <message id="CLEAN_OUTDATED"><translation>Seit dieser Suche hat eine Schnellreinigung Objekte entfernt.</translation></message>
    <message id="CLOSE"><translation>Schließen</translation></message>
    <message id="COLUMN_ID"><translation>Kennung</translation></message>
    <message id="COLUMN_INSTALLED"><translation>Installiert</translation></message>
    <message id="COPY_PATH"><translation>Pfad kopieren</translation></message>
    <message id="CPU Brand:"><translation>Prozessor:</translation></message>
    <message id="CPU Vendor:"><translation>Prozessorhersteller:</translation></message>
    <message id="Choose"><translation>Wählen</translation></message>
    <message id="Choose a login item"><translation>Anmeldeobjekt wählen</translation></message>
    <message id="Clean"><translation>Bereinigen</translation></message>
    <message id="Cleaned:"><translation>Bereinigt:</translation></message>
    <message id="Click lock to get a higer privileges."><translation>Klicken Sie auf das Schloss, um höhere Rechte zu erhalten.</translation></message>
    <message id="Created: %@"><translation>Erstellt: %1</translation></message>
    <message id="DESC_CLEAN_DOWNLOADS"><translation>Alles in Ihrem Download-Ordner. Sehen Sie ihn vorher durch: Es sind Ihre eigenen Dateien.</translation></message>
    <message id="DESC_CLEAN_SYS_CACHES"><translation>Pakete und Daten, die das System aufhebt, um sie nicht noch einmal herunterladen oder berechnen zu müssen. Bei Bedarf holt oder erzeugt es sie neu.</translation></message>
    <message id="DESC_CLEAN_SYS_LOGS"><translation>Aufzeichnungen von Installationen, Aktualisierungen und Abstürzen. Sie helfen nur, früheren Störungen nachzugehen.</translation></message>
    <message id="DESC_CLEAN_TRASH"><translation>Dateien, die Sie weggeworfen haben, auf allen Datenträgern. Einmal bereinigt, lassen sie sich nicht wiederherstellen.</translation></message>
    <message id="DESC_CLEAN_USR_CACHES"><translation>Was Ihre Programme aufheben, um schneller zu sein. Sie bauen es wieder auf; der erste Start danach kann etwas länger dauern.</translation></message>
    <message id="DESC_CLEAN_USR_LOGS"><translation>Aufzeichnungen Ihrer Programme über ihre eigene Arbeit. Sie helfen nur, früheren Störungen nachzugehen.</translation></message>
    <message id="DESC_FREESPACE_MONITOR"><translation>Behält den freien Platz jedes Datenträgers im Auge und warnt, bevor einer voll ist.</translation></message>
    <message id="DESC_UNINSTALL"><translation>Entfernt Programme samt den Einstellungen, Caches und Protokollen, die sie hinterlassen.</translation></message>
    <message id="DISK_IMAGE"><translation>Datenträgerabbilder</translation></message>
    <message id="DOWNLOADS_TICKED" numerus="yes"><translation><numerusform>%n Objekt Ihrer Downloads ist angehakt, %1.</numerusform><numerusform>%n Objekte Ihrer Downloads sind angehakt, %1.</numerusform></translation></message>
    <message id="DRIVE_STAYS"><translation>Das Laufwerk konnte nicht freigegeben werden.</translation></message>
    <message id="DUP_ASK" numerus="yes"><translation><numerusform>%n Datei entfernen und %1 freigeben?</numerusform><numerusform>%n Dateien entfernen und %1 freigeben?</numerusform></translation></message>
    <message id="DUP_BUSY"><translation>Hier läuft noch eine Suche oder ein Entfernen. Geben Sie den Ordner an, wenn es beendet ist.</translation></message>
    <message id="DUP_DETAILS"><translation>Details</translation></message>
    <message id="DUP_DROP"><translation>Ziehen Sie einen Ordner hierher: Brightsweep findet darin die Dateien mit gleichem Inhalt, wie sie auch heißen.</translation></message>
    <message id="DUP_FILTER"><translation>Name oder Ordner filtern</translation></message>
    <message id="DUP_FREED"><translation>Gäbe frei</translation></message>
    <message id="DUP_FREED_SO_FAR"><translation>bisher frei geworden</translation></message>
    <message id="DUP_FREES"><translation>Zusammen sind sie %1 groß. Was davon weitere Namen einer Datei, geteilte Blöcke und Lücken ausmachen, wird nicht frei.</translation></message>
    <message id="DUP_GROUP_NOTE" numerus="yes"><translation><numerusform>%1 zu viel · %n Datei</numerusform><numerusform>%1 zu viel · %n Dateien</numerusform></translation></message>
    <message id="DUP_GROUP_STAYED" numerus="yes"><translation><numerusform>%n Datei ist geblieben</numerusform><numerusform>%n Dateien sind geblieben</numerusform></translation></message>
    <message id="DUP_HARD_LINK" numerus="yes"><translation><numerusform>einer von %n Namen einer Datei</numerusform><numerusform>einer von %n Namen einer Datei</numerusform></translation></message>
    <message id="DUP_HIDDEN_TICKS" numerus="yes"><translation><numerusform>%n ausgewählte Datei ist hier nicht zu sehen. „Entfernen“ nimmt sie mit.</numerusform><numerusform>%n ausgewählte Dateien sind hier nicht zu sehen. „Entfernen“ nimmt sie mit.</numerusform></translation></message>
    <message id="DUP_KEEP_FIRST"><translation>Die zuerst gefundene behalten</translation></message>
    <message id="DUP_KEEP_FOLDER"><translation>Behalten, was in einem Ordner liegt…</translation></message>
    <message id="DUP_KEEP_NEWEST"><translation>Die neueste behalten</translation></message>
    <message id="DUP_KEEP_OLDEST"><translation>Die älteste behalten</translation></message>
    <message id="DUP_KEEP_SHORTEST"><translation>Die mit dem kürzesten Pfad behalten</translation></message>
    <message id="DUP_KEEP_THIS"><translation>Diese behalten</translation></message>
    <message id="DUP_KEPT_FOLDER"><translation>Ordner wählen, dessen Dateien bleiben</translation></message>
    <message id="DUP_LIMIT"><translation>Dateien größer als %1 · Ändern …</translation></message>
    <message id="DUP_LINK"><translation>Verknüpfung</translation></message>
    <message id="DUP_MORE_PLACES" numerus="yes"><translation><numerusform>und %n weitere</numerusform><numerusform>und %n weitere</numerusform></translation></message>
    <message id="DUP_NONE"><translation>Keine Duplikate gefunden</translation></message>
    <message id="DUP_NONE_LEFT"><translation>Keine Duplikate mehr übrig</translation></message>
    <message id="DUP_NOT_LOCAL"><translation>Sie liegt auf einem anderen Rechner und wird nicht angesehen.</translation></message>
    <message id="DUP_NOT_SHOWN" numerus="yes"><translation><numerusform>%n davon ist gerade nicht zu sehen.</numerusform><numerusform>%n davon sind gerade nicht zu sehen.</numerusform></translation></message>
    <message id="DUP_NO_CLASS"><translation>Ohne Art</translation></message>
    <message id="DUP_NO_FOLDER"><translation>Diesen Ordner gibt es nicht</translation></message>
    <message id="DUP_NO_LIMIT"><translation>Dateien jeder Größe · Ändern …</translation></message>
    <message id="DUP_ONE_FOLDER"><translation>%1 Alle liegen in %2.</translation></message>
    <message id="DUP_ONE_STAYS"><translation>Von jeder Gruppe bleibt mindestens eine Datei. Die anderen werden vorher noch einmal Byte für Byte mit ihr verglichen.</translation></message>
    <message id="DUP_PLACES"><translation>Wo sie liegen</translation></message>
    <message id="DUP_RECENT"><translation>Zuletzt durchsucht</translation></message>
    <message id="DUP_REMOVAL_STOPPED"><translation>Angehalten.</translation></message>
    <message id="DUP_REMOVE"><translation>Entfernen</translation></message>
    <message id="DUP_REMOVED" numerus="yes"><translation><numerusform>%n Datei entfernt, %1 frei geworden.</numerusform><numerusform>%n Dateien entfernt, %1 frei geworden.</numerusform></translation></message>
    <message id="DUP_SEARCHING"><translation>%1 wird durchsucht</translation></message>
    <message id="DUP_SHARE"><translation>Blöcke teilen</translation></message>
    <message id="DUP_SHARED" numerus="yes"><translation><numerusform>%n Datei teilt jetzt ihre Blöcke, %1 frei geworden.</numerusform><numerusform>%n Dateien teilen jetzt ihre Blöcke, %1 frei geworden.</numerusform></translation></message>
    <message id="DUP_SHARES"><translation>teilt ihre Blöcke</translation></message>
    <message id="DUP_SHARE_ASKING"><translation>Das Dateisystem wird gefragt, ob es das kann …</translation></message>
    <message id="DUP_STAYED" numerus="yes"><translation><numerusform>%n Datei ist geblieben; ihre Zeile sagt, warum.</numerusform><numerusform>%n Dateien sind geblieben; ihre Zeilen sagen, warum.</numerusform></translation></message>
    <message id="DUP_STOPPED"><translation>Die Suche wurde angehalten.</translation></message>
    <message id="DUP_TICK"><translation>Auswählen</translation></message>
    <message id="DUP_TICK_TIP"><translation>Nach einer Regel auswählen, die von jeder Gruppe eine Datei behält</translation></message>
    <message id="DUP_TIP_REMOVE"><translation>Sie lassen sich danach nicht zurückholen.</translation></message>
    <message id="DUP_TIP_SHARE"><translation>Jede Datei bleibt und nutzt die Blöcke der Datei, die behalten wird. Nichts geht verloren, und der Platz wird frei.</translation></message>
    <message id="DUP_TIP_TRASH"><translation>Sie lassen sich zurückholen und belegen Platz, bis der Papierkorb geleert wird.</translation></message>
    <message id="DUP_TRASHED" numerus="yes"><translation><numerusform>%n Datei liegt jetzt im Papierkorb.</numerusform><numerusform>%n Dateien liegen jetzt im Papierkorb.</numerusform></translation></message>
    <message id="DUP_UNDO"><translation>Letzte Auswahl zurücknehmen</translation></message>
    <message id="DUP_UNREADABLE"><translation>Sie lässt sich nicht öffnen.</translation></message>
    <message id="DUP_UNTICK"><translation>Alle abwählen</translation></message>
    <message id="DUP_WASTED" numerus="yes"><translation><numerusform>verschwendet durch Duplikate in %n Gruppe</numerusform><numerusform>verschwendet durch Duplikate in %n Gruppen</numerusform></translation></message>
    <message id="DUP_WHOLE_GROUPS" numerus="yes"><translation><numerusform>Von %n Gruppe gehen alle Dateien: nichts davon bleibt.</numerusform><numerusform>Von %n Gruppen gehen alle Dateien: nichts davon bleibt.</numerusform></translation></message>
    <message id="Daily"><translation>Täglich</translation></message>
    <message id="Deleting items..."><translation>Objekte werden gelöscht …</translation></message>
    <message id="Disk Usage"><translation>Belegung</translation></message>
    <message id="Documents"><translation>Dokumente</translation></message>
    <message id="Downloads folder is selected to clean. We recommend you to view this folder for anything useful before emptying it."><translation>Der Download-Ordner ist zum Bereinigen ausgewählt. Wir empfehlen Ihnen, ihn vor dem Leeren auf Nützliches durchzusehen.</translation></message>
    <message id="Duplicates"><translation>Duplikate</translation></message>
    <message id="EJECT"><translation>%1 auswerfen</translation></message>
    <message id="EMPTY_SCAN"><translation>Findet Caches, Protokolle, Papierkorb und alte Downloads und zeigt jedes Objekt, bevor etwas entfernt wird.</translation></message>
    <message id="EXACT_SHARES"><translation>Genaue Anteile</translation></message>
    <message id="EXTERNAL_STORAGE"><translation>Externe Laufwerke</translation></message>
    <message id="Eject All"><translation>Alle auswerfen</translation></message>
    <message id="Ejecting…"><translation>Wird ausgeworfen …</translation></message>
    <message id="FAILED_BUSY"><translation>in Gebrauch</translation></message>
    <message id="FAILED_CHANGED"><translation>inzwischen geändert</translation></message>
    <message id="FAILED_OTHER"><translation>nicht entfernt</translation></message>
    <message id="FAILED_PROTECTED"><translation>geschützt</translation></message>
    <message id="FAILED_READ_ONLY"><translation>schreibgeschützt</translation></message>
    <message id="FAILED_RIGHTS"><translation>Adminrechte nötig</translation></message>
    <message id="FAILED_STOPPED"><translation>angehalten</translation></message>
    <message id="FAILED_VOLUME"><translation>enthält Laufwerk</translation></message>
    <message id="FILTER"><translation>Nach Namen filtern</translation></message>
    <message id="FILTER_NO_MATCH"><translation>Kein Name passt zum Filter.</translation></message>
    <message id="FOLD_CLOSED"><translation>zugeklappt</translation></message>
    <message id="FOLD_OPEN"><translation>aufgeklappt</translation></message>
    <message id="FOUND_SO_FAR"><translation>bisher gefunden</translation></message>
    <message id="FREE_BEFORE_AFTER"><translation>Freier Platz: vorher %1, jetzt %2.</translation></message>
    <message id="FREE_MEMORY"><translation>Arbeitsspeicher</translation></message>
    <message id="FREE_OF"><translation>%1 von %2 frei</translation></message>
    <message id="Failed to uninstall the selected application(s). Please refer to Help for more info."><translation>Die ausgewählten Programme konnten nicht deinstalliert werden. Mehr dazu steht in der Hilfe.</translation></message>
    <message id="Fast Clean"><translation>Schnell bereinigen</translation></message>
    <message id="Free Memory"><translation>Speicher freigeben</translation></message>
    <message id="Free Space"><translation>Freier Platz</translation></message>
    <message id="Free Space Monitor"><translation>Freien Platz überwachen</translation></message>
    <message id="Free Space:"><translation>Frei: </translation></message>
    <message id="FreeSize:"><translation>Frei: </translation></message>
    <message id="Freeing..."><translation>Wird freigegeben …</translation></message>
    <message id="HIDDEN_TICKS" numerus="yes"><translation><numerusform>Der Filter verbirgt %n ausgewähltes Objekt. „Bereinigen“ entfernt es mit.</numerusform><numerusform>Der Filter verbirgt %n ausgewählte Objekte. „Bereinigen“ entfernt sie mit.</numerusform></translation></message>
    <message id="Help"><translation>Hilfe</translation></message>
    <message id="Hostname:"><translation>Rechnername:</translation></message>
    <message id="IN_USE_BY"><translation>Benutzt von %1</translation></message>
    <message id="ITEMS"><translation>Objekte</translation></message>
    <message id="KIND_APPIMAGE"><translation>AppImage</translation></message>
    <message id="KIND_BUNDLE"><translation>Bündel</translation></message>
    <message id="KIND_FLATPAK"><translation>Flatpak</translation></message>
    <message id="KIND_FOLDER"><translation>Eigener Ordner</translation></message>
    <message id="KIND_PACKAGE"><translation>Paket</translation></message>
    <message id="KIND_SNAP"><translation>Snap</translation></message>
    <message id="LAUNCH_FAILED"><translation>Ob Brightsweep beim Anmelden startet, konnte nicht geändert werden: %1</translation></message>
    <message id="LEFT_BEHIND_ASK" numerus="yes"><translation><numerusform>%n Objekt mit %1 entfernen?</numerusform><numerusform>%n Objekte mit %1 entfernen?</numerusform></translation></message>
    <message id="LEFT_BEHIND_COUNT" numerus="yes"><translation><numerusform>%n Objekt zurückgeblieben</numerusform><numerusform>%n Objekte zurückgeblieben</numerusform></translation></message>
    <message id="LEFT_BEHIND_NONE"><translation>Es wurde nichts gefunden, was entfernte Programme zurückgelassen haben.</translation></message>
    <message id="LEFT_BEHIND_REMOVED" numerus="yes"><translation><numerusform>%n Objekt entfernt, %1 frei geworden.</numerusform><numerusform>%n Objekte entfernt, %1 frei geworden.</numerusform></translation></message>
    <message id="LEFT_BEHIND_REMOVING"><translation>Wird entfernt…</translation></message>
    <message id="LEFT_BEHIND_SEARCHING"><translation>Zurückgebliebenes wird gesucht…</translation></message>
    <message id="LEFT_BEHIND_STAYED" numerus="yes"><translation><numerusform>%n Objekt ist geblieben.</numerusform><numerusform>%n Objekte sind geblieben.</numerusform></translation></message>
    <message id="LEFT_CACHE"><translation>Cache</translation></message>
    <message id="LEFT_CONFIG"><translation>Einstellungen</translation></message>
    <message id="LEFT_DATA"><translation>Daten</translation></message>
    <message id="LEFT_ENTRY"><translation>Menüeintrag</translation></message>
    <message id="LEFT_OUT_FOREIGN"><translation>%1 wird nicht bereinigt, da es jemand anderem gehört.</translation></message>
    <message id="LEFT_OUT_KEPT"><translation>%1 wird nicht bereinigt, da es mehr als seine Kategorie enthält.</translation></message>
    <message id="LEFT_OUT_TOP"><translation>%1 wird nicht bereinigt, da dort ein Datenträger beginnt.</translation></message>
    <message id="LEFT_STATE"><translation>Zustand</translation></message>
    <message id="LEFT_SYSTEM"><translation>Einstellungen des Systems</translation></message>
    <message id="LOCAL_STORAGE"><translation>Interne Laufwerke</translation></message>
    <message id="LOCK_NO_AGENT"><translation>Hier kann kein Programm nach Administratorrechten fragen. Starten Sie einen Polkit-Agenten oder Brightsweep als Administrator.</translation></message>
    <message id="LOGIN_ADD"><translation>Hinzufügen …</translation></message>
    <message id="LOGIN_ADD_FOLDER"><translation>Ordner hinzufügen …</translation></message>
    <message id="LOGIN_BAD_LINE"><translation>startet womöglich nicht, weil nicht jede Arbeitsumgebung diese Zeile versteht: %1</translation></message>
    <message id="LOGIN_BYTE_ORDER_MARK"><translation>startet womöglich nicht, weil seine Datei mit einem Byte Order Mark beginnt</translation></message>
    <message id="LOGIN_CANNOT_READ"><translation>Ihre Anmeldeobjekte sind nicht lesbar</translation></message>
    <message id="LOGIN_CANNOT_READ_HOW"><translation>Der Ordner „autostart“ in Ihren Einstellungen lässt sich nicht lesen: %1</translation></message>
    <message id="LOGIN_DAMAGED_MARK"><translation>beschädigt</translation></message>
    <message id="LOGIN_DELETE"><translation>Anmeldeobjekt entfernen</translation></message>
    <message id="LOGIN_DROP"><translation>oder Programme, Dokumente und Ordner auf die Liste ziehen</translation></message>
    <message id="LOGIN_ELSEWHERE_MARK"><translation>nicht hier</translation></message>
    <message id="LOGIN_ENTRY"><translation>Eintrag</translation></message>
    <message id="LOGIN_FAILED"><translation>%1: %2</translation></message>
    <message id="LOGIN_HIDDEN"><translation>Ausgeblendet</translation></message>
    <message id="LOGIN_HIDDEN_HOW"><translation>Ein ausgeblendetes Objekt bleibt in der Liste und startet nicht.</translation></message>
    <message id="LOGIN_HIDE"><translation>Ausblenden, damit es nicht startet</translation></message>
    <message id="LOGIN_LINE_ENDS"><translation>startet womöglich nicht, weil nicht jede Arbeitsumgebung seine Zeilenenden versteht</translation></message>
    <message id="LOGIN_MISSING"><translation>was es startet, ist nicht mehr da</translation></message>
    <message id="LOGIN_MISSING_MARK"><translation>fehlt</translation></message>
    <message id="LOGIN_NAME_TOO_LONG"><translation>startet womöglich nicht, weil der Name seiner Datei zu lang ist</translation></message>
    <message id="LOGIN_NEEDS"><translation>startet nicht, weil dieses Programm nicht installiert ist: %1</translation></message>
    <message id="LOGIN_NONE"><translation>Nichts von Ihnen startet mit der Sitzung</translation></message>
    <message id="LOGIN_NONE_HOW"><translation>Fügen Sie ein Programm, ein Dokument oder einen Ordner hinzu, oder legen Sie es hier ab.</translation></message>
    <message id="LOGIN_NOT_EXECUTABLE"><translation>startet nicht, weil dies kein Programm ist, das Sie ausführen dürfen: %1</translation></message>
    <message id="LOGIN_NOT_IN"><translation>startet nicht in dieser Arbeitsumgebung: %1</translation></message>
    <message id="LOGIN_NOT_UTF8"><translation>startet womöglich nicht, weil seine Datei Text enthält, der kein UTF-8 ist</translation></message>
    <message id="LOGIN_NO_APPLICATION"><translation>startet nicht, weil es keine Anwendung ist</translation></message>
    <message id="LOGIN_NO_COMMAND"><translation>startet nicht, weil es kein Programm nennt</translation></message>
    <message id="LOGIN_ONLY_IN"><translation>startet nur in anderen Arbeitsumgebungen: %1</translation></message>
    <message id="LOGIN_OPEN"><translation>Jetzt starten</translation></message>
    <message id="LOGIN_SENTENCE"><translation>Diese starten mit Ihrer Sitzung. Ein ausgeblendetes bleibt in der Liste und startet nicht.</translation></message>
    <message id="LOGIN_SHOW"><translation>Starten lassen</translation></message>
    <message id="LOGIN_STARTS"><translation>startet mit Ihrer Sitzung</translation></message>
    <message id="LOGIN_STAYS_MARK"><translation>startet nicht</translation></message>
    <message id="LOGIN_SYSTEM"><translation>Vom System ebenfalls gestartet (%1)</translation></message>
    <message id="LOGIN_SYSTEM_NOTE"><translation>Diese startet das System für alle. Ein Schalter gilt nur für Sie und lässt sich zurücknehmen.</translation></message>
    <message id="LOGIN_TWO_VALUES"><translation>startet womöglich etwas anderes, weil seine Datei dies zweimal angibt: %1</translation></message>
    <message id="LOGIN_UNREADABLE"><translation>seine Datei ist nicht lesbar</translation></message>
    <message id="LOGIN_UNREADABLE_MARK"><translation>nicht lesbar</translation></message>
    <message id="LOGIN_WAITING"><translation>Es wird auf Antwort Ihres persönlichen Ordners gewartet …</translation></message>
    <message id="LOW_SPACE"><translation>Wenig Speicherplatz</translation></message>
    <message id="LOW_SPACE_OF"><translation>%1: %2 von %3 sind frei.</translation></message>
    <message id="Launch at login"><translation>Bei der Anmeldung starten</translation></message>
    <message id="Left behind"><translation>Zurückgeblieben</translation></message>
    <message id="Login Items"><translation>Anmeldeobjekte</translation></message>
    <message id="MEMORY_ACTIVE"><translation>Aktiv</translation></message>
    <message id="MEMORY_AVAILABLE"><translation>Für Programme verfügbar</translation></message>
    <message id="MEMORY_CHART"><translation>Speicherdiagramm</translation></message>
    <message id="MEMORY_COMPRESSED"><translation>Komprimiert</translation></message>
    <message id="MEMORY_FILE_CACHE"><translation>Dateicache</translation></message>
    <message id="MEMORY_FREE"><translation>Frei</translation></message>
    <message id="MEMORY_INACTIVE"><translation>Inaktiv</translation></message>
    <message id="MEMORY_NO_SWAP"><translation>keine</translation></message>
    <message id="MEMORY_PARTS"><translation>Frei: %1, inaktiv: %2</translation></message>
    <message id="MEMORY_PRESSURE"><translation>Speicherdruck</translation></message>
    <message id="MEMORY_RELEASE_NOTE"><translation>Gibt Speicher zurück, in dem das System Kopien von Dateien hält. Programme behalten ihren, und Dateien werden bei Bedarf wieder vom Datenträger gelesen: Schneller wird dadurch nichts.</translation></message>
    <message id="MEMORY_SWAP"><translation>Auslagerung</translation></message>
    <message id="MEMORY_SWAP_OF"><translation>%1 von %2</translation></message>
    <message id="MEMORY_TOTAL"><translation>Gesamt</translation></message>
    <message id="MEMORY_USED"><translation>Belegt</translation></message>
    <message id="MEMORY_WIRED"><translation>Fest belegt</translation></message>
    <message id="MENU"><translation>Menü</translation></message>
    <message id="MOVE_TO_TRASH"><translation>In den Papierkorb</translation></message>
    <message id="Main Window"><translation>Hauptfenster</translation></message>
    <message id="Memory"><translation>Arbeitsspeicher</translation></message>
    <message id="Memory:"><translation>Arbeitsspeicher:</translation></message>
    <message id="Model Identifier:"><translation>Modell:</translation></message>
    <message id="Modified"><translation>Geändert</translation></message>
    <message id="Monthly"><translation>Monatlich</translation></message>
    <message id="Music"><translation>Musik</translation></message>
    <message id="My Mac"><translation>Mein Computer</translation></message>
    <message id="NETWOR_STORAGE"><translation>Netzlaufwerke</translation></message>
    <message id="NO"><translation>Nein</translation></message>
    <message id="NOTHING_RELEASED"><translation>Kein Speicher ließ sich freigeben.</translation></message>
    <message id="NOTHING_RELEASED_WHY"><translation>Es konnte kein Speicher freigegeben werden. Vielleicht erlaubt das System es nur einem Administrator; im Protokoll steht, woran das Werkzeug gescheitert ist.</translation></message>
    <message id="NOTHING_TO_CLEAN"><translation>Nichts zu bereinigen</translation></message>
    <message id="NOTHING_TO_CLEAN_WHY"><translation>Keine der sechs Kategorien enthält etwas, das entfernt werden könnte.</translation></message>
    <message id="NOT_KNOWN"><translation>nicht bekannt</translation></message>
    <message id="NO_FOLDER_CONTENT"><translation>Es sind keine Ordner zum Bereinigen ausgewählt. Wählen Sie sie in den Einstellungen aus.</translation></message>
    <message id="NO_GUIDE"><translation>Die Anleitung lässt sich nicht öffnen.</translation></message>
    <message id="NO_HAVE_REMOVABLE"><translation>Es gibt nichts auszuwerfen.</translation></message>
    <message id="Name"><translation>Name</translation></message>
    <message id="No items found in selected folder. Please try another one."><translation>In diesem Ordner ist nichts, das groß genug ist. Bitte wählen Sie einen anderen.</translation></message>
    <message id="OK"><translation>OK</translation></message>
    <message id="OPEN_DOWNLOADS"><translation>Downloads öffnen</translation></message>
    <message id="OS Release:"><translation>Systemversion:</translation></message>
    <message id="OS Type:"><translation>Systemart:</translation></message>
    <message id="Open"><translation>Öffnen</translation></message>
    <message id="Others"><translation>Sonstige</translation></message>
    <message id="PADLOCK"><translation>Schloss</translation></message>
    <message id="PARTLY_TICKED"><translation>teilweise angehakt</translation></message>
    <message id="PERCENT"><translation>%1 %</translation></message>
    <message id="PREF_ALARMS"><translation>Warnungen</translation></message>
    <message id="PREF_ALWAYS_ASKS"><translation>Bevor etwas von Ihren Downloads genommen wird, kommt immer eine Frage.</translation></message>
    <message id="PREF_CATEGORIES_IN_USE"><translation>Gerade läuft ein Scan oder eine Bereinigung; danach ist es zu ändern.</translation></message>
    <message id="PREF_CATEGORY_WORDS"><translation>Was nach einem Scan angehakt ist und was die Schnellbereinigung nimmt.</translation></message>
    <message id="PREF_CHECK_INTERVAL"><translation>Wie oft nach Aktualisierungen gesucht wird</translation></message>
    <message id="PREF_CHECK_UPDATES"><translation>Nach Aktualisierungen suchen</translation></message>
    <message id="PREF_CLEANING"><translation>Bereinigen</translation></message>
    <message id="PREF_DESKTOP_LANGUAGE"><translation>Wie die Arbeitsumgebung</translation></message>
    <message id="PREF_DUPLICATE_LIMIT"><translation>Duplikate: Dateien größer als</translation></message>
    <message id="PREF_HIDDEN_FILES"><translation>Duplikate: auch versteckte Dateien</translation></message>
    <message id="PREF_HIDE_ITEM"><translation>Symbol in der Leiste verbergen</translation></message>
    <message id="PREF_LANGUAGE"><translation>Sprache</translation></message>
    <message id="PREF_LAUNCH"><translation>Start</translation></message>
    <message id="PREF_LOG"><translation>Protokoll</translation></message>
    <message id="PREF_MAY_ASK"><translation>Darf nach Administratorrechten fragen</translation></message>
    <message id="PREF_MEMORY_ALARM"><translation>Warnen, wenn Programmen höchstens so viel Speicher bleibt</translation></message>
    <message id="PREF_NO_UPDATES"><translation>Für diesen Stand bietet niemand Aktualisierungen an; stammt er aus einem Paket, tut es die Paketverwaltung.</translation></message>
    <message id="PREF_OPEN_LOG"><translation>Protokoll öffnen</translation></message>
    <message id="PREF_PROGRAM"><translation>Dieses Programm</translation></message>
    <message id="PREF_RESTART_TIP"><translation>Startet Brightsweep neu, in der anderen Sprache.</translation></message>
    <message id="PREF_SEARCHES"><translation>Suchen</translation></message>
    <message id="PREF_SPACE_ALARM"><translation>Warnen, wenn auf einem Volume höchstens frei ist</translation></message>
    <message id="PREF_SYSTEM_FILES"><translation>Duplikate: auch Systemdateien</translation></message>
    <message id="PREF_UNIT_OF"><translation>Einheit von „%1“</translation></message>
    <message id="PREF_UPDATES"><translation>Aktualisierungen</translation></message>
    <message id="PREF_USAGE_LIMIT"><translation>Belegung als Liste: ab</translation></message>
    <message id="PRESSURE_HIGH"><translation>hoch</translation></message>
    <message id="PRESSURE_NONE"><translation>keiner</translation></message>
    <message id="PRESSURE_SOME"><translation>etwas</translation></message>
    <message id="PRESSURE_TIP"><translation>In den letzten zehn Sekunden haben Programme %1 % der Zeit auf Speicher gewartet.</translation></message>
    <message id="PROCESS_COUNT" numerus="yes"><translation><numerusform>%n Prozess</numerusform><numerusform>%n Prozesse</numerusform></translation></message>
    <message id="PROGRAMS_ESTIMATED"><translation>Geschätzt: Was Programme gemeinsam nutzen, zählt bei jedem.</translation></message>
    <message id="PROGRAMS_EXACT"><translation>Genaue Anteile.</translation></message>
    <message id="PROGRAMS_EXACT_BUT" numerus="yes"><translation><numerusform>Genaue Anteile, außer bei %n Prozess, den Sie nicht lesen dürfen.</numerusform><numerusform>Genaue Anteile, außer bei %n Prozessen, die Sie nicht lesen dürfen.</numerusform></translation></message>
    <message id="PROGRAMS_MOST"><translation>Programme mit dem meisten Speicher</translation></message>
    <message id="PROGRAMS_NOT_EXACT" numerus="yes"><translation><numerusform>Geschätzt: Den genauen Anteil von %n Prozess dürfen Sie nicht lesen.</numerusform><numerusform>Geschätzt: Die genauen Anteile von %n Prozessen dürfen Sie nicht lesen.</numerusform></translation></message>
    <message id="Pictures"><translation>Bilder</translation></message>
    <message id="Please select some path to scan."><translation>Bitte wählen Sie, was gelesen werden soll.</translation></message>
    <message id="Preferences"><translation>Einstellungen</translation></message>
    <message id="QUICK_CLEAN"><translation>Bereinigen</translation></message>
    <message id="QUICK_CLEAN_ASK"><translation>Alles in diesen Ordnern wird entfernt.</translation></message>
    <message id="QUICK_CLEAN_FOLDER"><translation>%1: %2</translation></message>
    <message id="QUICK_CLEAN_FOLDERS" numerus="yes"><translation><numerusform>%1: %2 und %n weiterer Ordner</numerusform><numerusform>%1: %2 und %n weitere Ordner</numerusform></translation></message>
    <message id="Quick Clean"><translation>Schnell bereinigen</translation></message>
    <message id="Quick Clean…"><translation>Schnell bereinigen …</translation></message>
    <message id="Quit"><translation>Beenden</translation></message>
    <message id="Quit Brightsweep"><translation>Brightsweep beenden</translation></message>
    <message id="READING_SHARES"><translation>Wird gelesen …</translation></message>
    <message id="REMOVAL_NO_LOCK"><translation>Ob gerade anderes entfernt wird, lässt sich nicht feststellen; deshalb wird jetzt nichts entfernt.</translation></message>
    <message id="REMOVAL_RUNS"><translation>Es wird bereits etwas entfernt (%1, Prozess %2). Warten Sie, bis das beendet ist.</translation></message>
    <message id="RESTART"><translation>Neu starten</translation></message>
    <message id="RESULTS"><translation>Ergebnisse</translation></message>
    <message id="REVEAL"><translation>In der Dateiverwaltung zeigen</translation></message>
    <message id="RIGHTS_DENIED"><translation>Administratorrechte wurden verweigert: Das Passwort war falsch, oder dieses Konto darf sie nicht haben. Was sie braucht, bleibt.</translation></message>
    <message id="RIGHTS_DISMISSED"><translation>Die Frage nach dem Passwort wurde geschlossen. Es gibt keine Administratorrechte, und was sie braucht, bleibt.</translation></message>
    <message id="RIGHTS_FAILED"><translation>Die Frage nach Administratorrechten ist fehlgeschlagen; mehr steht im Protokoll. Was sie braucht, bleibt.</translation></message>
    <message id="RIGHTS_NO_BUS"><translation>Der Dienst, der Administratorrechte gibt (polkit), ist nicht erreichbar. Was sie braucht, bleibt.</translation></message>
    <message id="ROW_WARNS"><translation>Knapp</translation></message>
    <message id="RUNS_WITHOUT_ITEM"><translation>Brightsweep läuft</translation></message>
    <message id="RUNS_WITHOUT_ITEM_HOW"><translation>Diese Arbeitsumgebung zeigt keine Statussymbole. Starten Sie Brightsweep noch einmal oder wählen Sie „Öffnen“, um sein Fenster zu sehen.</translation></message>
    <message id="Removal"><translation>Entfernen</translation></message>
    <message id="SCAN_STOPPED"><translation>Die Suche wurde angehalten</translation></message>
    <message id="SETTINGS_NOT_KEPT"><translation>Änderungen werden nicht gespeichert, solange die Einstellungsdatei %1 nicht verwendbar ist (%2).</translation></message>
    <message id="SETTINGS_UNREADABLE"><translation>Die Einstellungen lassen sich nicht lesen, deshalb ist nichts zum Reinigen gewählt (%1: %2). Reparieren oder entfernen Sie diese Datei.</translation></message>
    <message id="SHOW_ALL"><translation>Alle zeigen</translation></message>
    <message id="SHOW_OVERVIEW"><translation>Alle Kategorien zeigen</translation></message>
    <message id="SHOW_VOLUMES"><translation>Datenträger zeigen</translation></message>
    <message id="SOME_STAYED"><translation>Einige Dateien sind geblieben.</translation></message>
    <message id="SOME_STAYED_WHY"><translation>Der Grund steht jeweils daneben.</translation></message>
    <message id="STAYED_IN_USE" numerus="yes"><translation><numerusform>%n Objekt wird benutzt</numerusform><numerusform>%n Objekte werden benutzt</numerusform></translation></message>
    <message id="STAYED_OTHER" numerus="yes"><translation><numerusform>%n Objekt ließ sich nicht entfernen</numerusform><numerusform>%n Objekte ließen sich nicht entfernen</numerusform></translation></message>
    <message id="STAYED_READ_ONLY" numerus="yes"><translation><numerusform>%n Objekt liegt auf einem schreibgeschützten Datenträger</numerusform><numerusform>%n Objekte liegen auf einem schreibgeschützten Datenträger</numerusform></translation></message>
    <message id="STAYED_RIGHTS" numerus="yes"><translation><numerusform>%n Objekt braucht Administratorrechte</numerusform><numerusform>%n Objekte brauchen Administratorrechte</numerusform></translation></message>
    <message id="STAYS_BROKEN"><translation>mittendrin abgebrochen</translation></message>
    <message id="STAYS_BUSY"><translation>die Paketverwaltung arbeitet gerade</translation></message>
    <message id="STAYS_CHANGED"><translation>hat sich seit der Frage geändert</translation></message>
    <message id="STAYS_DISMISSED"><translation>nicht erlaubt</translation></message>
    <message id="STAYS_ESSENTIAL"><translation>das System braucht es</translation></message>
    <message id="STAYS_FAILED"><translation>ließ sich nicht entfernen</translation></message>
    <message id="STAYS_GONE"><translation>nicht mehr da</translation></message>
    <message id="STAYS_IMAGE"><translation>gehört zum Abbild des Systems</translation></message>
    <message id="STAYS_INTERRUPTED"><translation>die Paketverwaltung wurde unterbrochen</translation></message>
    <message id="STAYS_LEFTOVERS"><translation>ist entfernt, geblieben sind: %1</translation></message>
    <message id="STAYS_NEEDED_BY_US"><translation>Brightsweep selbst ginge mit</translation></message>
    <message id="STAYS_NEEDS_RIGHTS"><translation>braucht Administratorrechte</translation></message>
    <message id="STAYS_OWN"><translation>ist das Programm, das Sie gerade benutzen</translation></message>
    <message id="STAYS_TOO_MANY"><translation>zu viel hängt davon ab</translation></message>
    <message id="STAYS_UNSUPPORTED"><translation>lässt sich von hier nicht sicher entfernen</translation></message>
    <message id="STOP"><translation>Anhalten</translation></message>
    <message id="SUPER_DRIVER"><translation>Optische Laufwerke</translation></message>
    <message id="Scan"><translation>Durchsuchen</translation></message>
    <message id="Scanning system..."><translation>System wird durchsucht …</translation></message>
    <message id="Selected"><translation>Ausgewählt</translation></message>
    <message id="Selected application(s) were uninstalled successfully."><translation>Die ausgewählten Programme wurden deinstalliert.</translation></message>
    <message id="Size"><translation>Größe</translation></message>
    <message id="Some files that require admin access can't be removed!"><translation>Einige Dateien lassen sich nur mit Adminrechten entfernen!</translation></message>
    <message id="Start"><translation>Start</translation></message>
    <message id="Stopping…"><translation>Wird angehalten …</translation></message>
    <message id="System Applications"><translation>Systemprogramme</translation></message>
    <message id="System Caches"><translation>System-Caches</translation></message>
    <message id="System Logs"><translation>Systemprotokolle</translation></message>
    <message id="System application(s),Do you want to uninstall it?"><translation>Systemprogramme sind dabei. Möchten Sie sie deinstallieren?</translation></message>
    <message id="THIS_COMPUTER"><translation>Dieser Computer</translation></message>
    <message id="TICK_ALL"><translation>Alle auswählen</translation></message>
    <message id="TIP_KEEP_DOWNLOADS" numerus="yes"><translation><numerusform>Behält die Downloads und entfernt das übrige Objekt, insgesamt %n, %1.</numerusform><numerusform>Behält die Downloads und entfernt die übrigen %n Objekte, %1.</numerusform></translation></message>
    <message id="TIP_LOOK_FIRST"><translation>Zeigt den Ordner und entfernt nichts; die Frage bleibt.</translation></message>
    <message id="TIP_REMOVE_ALL" numerus="yes"><translation><numerusform>Entfernt das %n angehakte Objekt, %1.</numerusform><numerusform>Entfernt alle %n angehakten Objekte, %1.</numerusform></translation></message>
    <message id="TIP_REMOVE_NOTHING"><translation>Entfernt nichts.</translation></message>
    <message id="TITLE_CLEAN_DOWNLOADS"><translation>Downloads</translation></message>
    <message id="TITLE_CLEAN_SYS_CACHES"><translation>System-Caches</translation></message>
    <message id="TITLE_CLEAN_SYS_LOGS"><translation>Systemprotokolle</translation></message>
    <message id="TITLE_CLEAN_SYS_MYMAC"><translation>Mein Computer</translation></message>
    <message id="TITLE_CLEAN_TRASH"><translation>Papierkorb</translation></message>
    <message id="TITLE_CLEAN_USR_CACHES"><translation>Benutzer-Caches</translation></message>
    <message id="TITLE_CLEAN_USR_LOGS"><translation>Benutzerprotokolle</translation></message>
    <message id="TITLE_FREESPACE_MONITOR"><translation>Freien Platz überwachen</translation></message>
    <message id="TITLE_UNINSTALL"><translation>Programme deinstallieren</translation></message>
    <message id="The package manager was interrupted. Run &quot;apt-get -f install&quot; as administrator first."><translation>Die Paketverwaltung wurde unterbrochen. Führen Sie zuerst als Administrator „apt-get -f install“ aus.</translation></message>
    <message id="The package manager was interrupted. Run &quot;dpkg --configure -a&quot; as administrator first."><translation>Die Paketverwaltung wurde unterbrochen. Führen Sie zuerst als Administrator „dpkg --configure -a“ aus.</translation></message>
    <message id="The scan was stopped. Brightsweep has to be restarted before it can scan again."><translation>Die Suche wurde angehalten. Vor der nächsten Suche muss Brightsweep neu gestartet werden.</translation></message>
    <message id="Total Size:"><translation>Gesamt: </translation></message>
    <message id="TotalSize:"><translation>Gesamt: </translation></message>
    <message id="UNINSTALL_ALONG" numerus="yes"><translation><numerusform>%n weiteres Paket, das ohne es nicht auskommt, geht mit: %1.</numerusform><numerusform>%n weitere Pakete, die ohne es nicht auskommen, gehen mit: %1.</numerusform></translation></message>
    <message id="UNINSTALL_ASKING_RIGHTS"><translation>Warten auf die Erlaubnis des Administrators…</translation></message>
    <message id="UNINSTALL_BUT_LEFTOVERS"><translation>Deinstalliert. Einiges vom Hinterlassenen ließ sich nicht entfernen.</translation></message>
    <message id="UNINSTALL_COUNT" numerus="yes"><translation><numerusform>%n Programm</numerusform><numerusform>%n Programme</numerusform></translation></message>
    <message id="UNINSTALL_DETAILS"><translation>Details</translation></message>
    <message id="UNINSTALL_EMPTY"><translation>Es wurden keine Programme gefunden, die sich deinstallieren lassen.</translation></message>
    <message id="UNINSTALL_ENTRIES"><translation>Mit ihm verschwinden: %1.</translation></message>
    <message id="UNINSTALL_FILTER"><translation>Programme suchen</translation></message>
    <message id="UNINSTALL_HIDDEN_TICKS" numerus="yes"><translation><numerusform>%n angekreuztes Programm ist hier nicht zu sehen. Es wird nicht deinstalliert.</numerusform><numerusform>%n angekreuzte Programme sind hier nicht zu sehen. Sie werden nicht deinstalliert.</numerusform></translation></message>
    <message id="UNINSTALL_KIND_NOT_LISTED"><translation>Nicht aufgelistet werden konnten: %1</translation></message>
    <message id="UNINSTALL_LEAVES"><translation>Es lässt dies zurück; was angekreuzt ist, geht mit:</translation></message>
    <message id="UNINSTALL_LEAVES_NOTHING"><translation>Es ist nichts bekannt, was es zurückließe.</translation></message>
    <message id="UNINSTALL_LISTING"><translation>Programme werden gesucht…</translation></message>
    <message id="UNINSTALL_MEASURING"><translation>Wird gemessen…</translation></message>
    <message id="UNINSTALL_NEEDS_RIGHTS"><translation>Dafür sind Administratorrechte nötig; ohne sie wird nichts davon entfernt.</translation></message>
    <message id="UNINSTALL_NOTHING_GOES"><translation>Nichts davon lässt sich deinstallieren.</translation></message>
    <message id="UNINSTALL_NOT_LISTED"><translation>Die Programme konnten nicht aufgelistet werden.</translation></message>
    <message id="UNINSTALL_PLANNING"><translation>Es wird ermittelt, was mitgeht…</translation></message>
    <message id="UNINSTALL_PURGE"><translation>Einstellungen des ganzen Systems: %1</translation></message>
    <message id="UNINSTALL_REMOVING"><translation>%1 wird entfernt…</translation></message>
    <message id="UNINSTALL_RUNNING"><translation>Es läuft gerade (%1). Beenden Sie es vorher: Was es beim Beenden schreibt, bliebe zurück.</translation></message>
    <message id="UNINSTALL_SNAP_COPY"><translation>Auch die Kopie seiner Daten, die sonst 31 Tage aufgehoben würde</translation></message>
    <message id="UNINSTALL_STAYS"><translation>Es bleibt: %1.</translation></message>
    <message id="UNINSTALL_SUM"><translation>%1 verschwinden: %2.</translation></message>
    <message id="UNINSTALL_SUM_ALONG" numerus="yes"><translation><numerusform>%n Paket dazu</numerusform><numerusform>%n Pakete dazu</numerusform></translation></message>
    <message id="UNINSTALL_SUM_APPS" numerus="yes"><translation><numerusform>%n Programm</numerusform><numerusform>%n Programme</numerusform></translation></message>
    <message id="UNINSTALL_SUM_LEFT" numerus="yes"><translation><numerusform>%n Rest</numerusform><numerusform>%n Reste</numerusform></translation></message>
    <message id="UNINSTALL_SUM_STAYS" numerus="yes"><translation><numerusform>%n nicht angekreuzter Rest bleibt (%1).</numerusform><numerusform>%n nicht angekreuzte Reste bleiben (%1).</numerusform></translation></message>
    <message id="UNINSTALL_WORKING"><translation>Wird deinstalliert…</translation></message>
    <message id="UNIT_BYTES"><translation>Byte</translation></message>
    <message id="UNIT_TB_TIP"><translation>Keine Datei erreicht eine Grenze in TB.</translation></message>
    <message id="USAGE_AGE_HALF_YEAR"><translation>im letzten halben Jahr</translation></message>
    <message id="USAGE_AGE_MONTH"><translation>im letzten Monat</translation></message>
    <message id="USAGE_AGE_OLDER"><translation>älter</translation></message>
    <message id="USAGE_AGE_TWO_YEARS"><translation>in den letzten zwei Jahren</translation></message>
    <message id="USAGE_AGE_YEAR"><translation>im letzten Jahr</translation></message>
    <message id="USAGE_ASK" numerus="yes"><translation><numerusform>%n Objekt entfernen?</numerusform><numerusform>%n Objekte entfernen?</numerusform></translation></message>
    <message id="USAGE_ASK_ONCE_MORE" numerus="yes"><translation><numerusform>Auch dieses Objekt entfernen?</numerusform><numerusform>Auch diese %n Objekte entfernen?</numerusform></translation></message>
    <message id="USAGE_BY_AGE"><translation>Farben nach letzter Änderung</translation></message>
    <message id="USAGE_BY_KIND"><translation>Farben nach Art der Dateien</translation></message>
    <message id="USAGE_BY_PLACE"><translation>Farben nach Ort</translation></message>
    <message id="USAGE_BY_SIZE"><translation>Größen der Dateien</translation></message>
    <message id="USAGE_BY_STORED"><translation>Belegter Platz</translation></message>
    <message id="USAGE_CANNOT_TICK"><translation>%1 lässt sich nicht auswählen: %2.</translation></message>
    <message id="USAGE_CHART"><translation>Ringdiagramm</translation></message>
    <message id="USAGE_CHART_MODE"><translation>Ringdiagramm</translation></message>
    <message id="USAGE_COPY_PATH"><translation>Pfad kopieren</translation></message>
    <message id="USAGE_DROP"><translation>Ziehen Sie einen Ordner hierher oder wählen Sie einen Datenträger, um zu sehen, was seinen Platz belegt.</translation></message>
    <message id="USAGE_EMPTY"><translation>In diesem Ordner ist nichts.</translation></message>
    <message id="USAGE_FREES"><translation>Das gibt %1 frei.</translation></message>
    <message id="USAGE_FREE_OF"><translation>%1 von %2 frei</translation></message>
    <message id="USAGE_FURTHER_FOLDERS"><translation>Weitere Ordner auf dem Weg</translation></message>
    <message id="USAGE_FURTHER_ITEMS" numerus="yes"><translation><numerusform>%n weiteres Objekt</numerusform><numerusform>%n weitere Objekte</numerusform></translation></message>
    <message id="USAGE_GAP"><translation>Dateien und kleine Ordner in %1</translation></message>
    <message id="USAGE_GONE"><translation>%1 ist nicht mehr da.</translation></message>
    <message id="USAGE_LEAVE_OUT"><translation>Weglassen</translation></message>
    <message id="USAGE_LEFT_OUT" numerus="yes"><translation><numerusform>%n Ordner ist weggelassen.</numerusform><numerusform>%n Ordner sind weggelassen.</numerusform></translation></message>
    <message id="USAGE_LIST"><translation>Ordner und große Dateien</translation></message>
    <message id="USAGE_LIST_MODE"><translation>Liste</translation></message>
    <message id="USAGE_MORE_THAN_VOLUME"><translation>Das ist mehr, als der Datenträger fasst: Eine Datei mit mehreren Namen zählt für jeden einmal, und Dateien mit Lücken zählen ganz.</translation></message>
    <message id="USAGE_NOTE_GAINED" numerus="yes"><translation><numerusform>%n Eintrag ist seit der Auswahl hinzugekommen</numerusform><numerusform>%n Einträge sind seit der Auswahl hinzugekommen</numerusform></translation></message>
    <message id="USAGE_NOTE_GONE"><translation>ist schon fort</translation></message>
    <message id="USAGE_NOTE_IN_USE"><translation>wird von %1 benutzt</translation></message>
    <message id="USAGE_NOTE_SMALL" numerus="yes"><translation><numerusform>mit %n kleinen Eintrag, %1</numerusform><numerusform>mit %n kleinen Einträgen, %1</numerusform></translation></message>
    <message id="USAGE_OF_VOLUME"><translation>%1 % des Datenträgers</translation></message>
    <message id="USAGE_OPEN"><translation>Öffnen</translation></message>
    <message id="USAGE_PATH"><translation>Pfad</translation></message>
    <message id="USAGE_PNG"><translation>PNG-Bild (*.png)</translation></message>
    <message id="USAGE_PROGRESS"><translation>Fortschritt</translation></message>
    <message id="USAGE_READING_AGAIN"><translation>Ein Ordner wird neu eingelesen…</translation></message>
    <message id="USAGE_READ_AGAIN"><translation>Neu einlesen</translation></message>
    <message id="USAGE_RECENT"><translation>Zuletzt gelesen</translation></message>
    <message id="USAGE_REMOVE"><translation>Entfernen</translation></message>
    <message id="USAGE_REMOVED" numerus="yes"><translation><numerusform>%n Objekt entfernt, %1 freigegeben.</numerusform><numerusform>%n Objekte entfernt, %1 freigegeben.</numerusform></translation></message>
    <message id="USAGE_REMOVING"><translation>Wird entfernt: %1 von %2</translation></message>
    <message id="USAGE_REST" numerus="yes"><translation><numerusform>%n Datei unter der Grenze ist nicht aufgeführt: %1</numerusform><numerusform>%n Dateien unter der Grenze sind nicht aufgeführt: %1</numerusform></translation></message>
    <message id="USAGE_REVEAL"><translation>In der Dateiverwaltung zeigen</translation></message>
    <message id="USAGE_SAVE_PICTURE"><translation>Bild sichern …</translation></message>
    <message id="USAGE_SCANNING"><translation>%1 wird gelesen</translation></message>
    <message id="USAGE_SCAN_ONLY"><translation>Nur diesen Ordner lesen</translation></message>
    <message id="USAGE_SHOW_UNREAD"><translation>Ordner zeigen …</translation></message>
    <message id="USAGE_STAYED" numerus="yes"><translation><numerusform>%n Objekt ist geblieben: %1.</numerusform><numerusform>%n Objekte sind geblieben: %1.</numerusform></translation></message>
    <message id="USAGE_STOPPED"><translation>Das letzte Lesen wurde angehalten.</translation></message>
    <message id="USAGE_SVG"><translation>SVG-Bild (*.svg)</translation></message>
    <message id="USAGE_TICK"><translation>Auswählen</translation></message>
    <message id="USAGE_TIP_REMOVE"><translation>Entfernt das Angekreuzte endgültig.</translation></message>
    <message id="USAGE_TIP_TRASH"><translation>Legt das Angekreuzte in den Papierkorb; Platz wird erst frei, wenn er geleert wird.</translation></message>
    <message id="USAGE_TRASHED" numerus="yes"><translation><numerusform>%n Objekt in den Papierkorb gelegt.</numerusform><numerusform>%n Objekte in den Papierkorb gelegt.</numerusform></translation></message>
    <message id="USAGE_UNREAD" numerus="yes"><translation><numerusform>%n Ordner ließ sich nicht lesen: %1. Mit Verwalterrechten: %2</numerusform><numerusform>%n Ordner ließen sich nicht lesen, zuerst %1. Mit Verwalterrechten: %2</numerusform></translation></message>
    <message id="USAGE_UNREAD_MORE" numerus="yes"><translation><numerusform>… und %n weiterer</numerusform><numerusform>… und %n weitere</numerusform></translation></message>
    <message id="USAGE_UNREAD_TITLE" numerus="yes"><translation><numerusform>%n Ordner war nicht lesbar</numerusform><numerusform>%n Ordner waren nicht lesbar</numerusform></translation></message>
    <message id="USAGE_UNTICK"><translation>Nicht mehr auswählen</translation></message>
    <message id="USAGE_VIEW"><translation>Ansicht</translation></message>
    <message id="USAGE_VIEW_TIP"><translation>Was Farben und Größen des Diagramms sagen</translation></message>
    <message id="USAGE_WAITS"><translation>Das letzte Lesen wartet noch auf %1, das nicht antwortet.</translation></message>
    <message id="Uninstall"><translation>Deinstallieren</translation></message>
    <message id="Uninstall Applications"><translation>Programme deinstallieren</translation></message>
    <message id="Uninstall the selected application(s)?"><translation>Die ausgewählten Programme deinstallieren?</translation></message>
    <message id="User Caches"><translation>Benutzer-Caches</translation></message>
    <message id="User Downloads"><translation>Downloads</translation></message>
    <message id="User Logs"><translation>Benutzerprotokolle</translation></message>
    <message id="User Trash"><translation>Papierkorb</translation></message>
    <message id="VOLUMES_AND_MEMORY"><translation>Datenträger und Arbeitsspeicher</translation></message>
    <message id="VOLUME_FREE_OF"><translation>%1, %2 von %3 frei</translation></message>
    <message id="VOLUME_UNMOUNTED"><translation>%1 ist ausgehängt.</translation></message>
    <message id="Videos"><translation>Videos</translation></message>
    <message id="Weekly"><translation>Wöchentlich</translation></message>
    <message id="Work on %1 was interrupted. Install it again as administrator first, with &quot;apt-get install --reinstall&quot; and its name."><translation>Die Arbeit an %1 wurde unterbrochen. Installieren Sie es zuerst als Administrator neu, mit „apt-get install --reinstall“ und dem Namen.</translation></message>
    <message id="Work on %1 was interrupted. Run &quot;apt-get -f install&quot; as administrator first."><translation>Die Arbeit an %1 wurde unterbrochen. Führen Sie zuerst als Administrator „apt-get -f install“ aus.</translation></message>
    <message id="Work on %1 was interrupted. Run &quot;dpkg --configure -a&quot; as administrator first."><translation>Die Arbeit an %1 wurde unterbrochen. Führen Sie zuerst als Administrator „dpkg --configure -a“ aus.</translation></message>
    <message id="YES"><translation>Ja</translation></message>
    <message id="You disk"><translation>Ihr Datenträger</translation></message>
    <message id="You do not have privileges to clean these files. Please open the padlock at the bottom to have admin access."><translation>Sie haben nicht die Rechte, diese Dateien zu bereinigen. Öffnen Sie unten das Schloss, um Verwaltungsrechte zu erhalten.</translation></message>
    <message id="a program is writing to it"><translation>ein Programm schreibt gerade hinein</translation></message>
    <message id="a program is writing to the copy that stays"><translation>ein Programm schreibt in die Kopie, die bleibt</translation></message>
    <message id="a protected place"><translation>ein geschützter Ort</translation></message>
    <message id="asks for the administrator's password"><translation>fragt nach dem Passwort des Administrators</translation></message>
    <message id="cannot be removed"><translation>lässt sich nicht entfernen</translation></message>
    <message id="changed since it was found"><translation>seit dem Fund geändert</translation></message>
    <message id="clean memory"><translation>Speicher freigeben</translation></message>
    <message id="has a name that a login item cannot hold"><translation>hat einen Namen, der nicht in einem Anmeldeobjekt stehen kann</translation></message>
    <message id="has an entry of your own in its place"><translation>hat einen Eintrag von Ihnen an seiner Stelle</translation></message>
    <message id="has no trash on its volume"><translation>hat auf seinem Datenträger keinen Papierkorb</translation></message>
    <message id="has the name of &quot;%1&quot;, which was removed"><translation>heißt wie „%1“, das entfernt wurde</translation></message>
    <message id="holds another volume"><translation>enthält einen anderen Datenträger</translation></message>
    <message id="holds no login item"><translation>enthält kein Anmeldeobjekt</translation></message>
    <message id="installs and removes programs"><translation>installiert und entfernt Programme</translation></message>
    <message id="is a link to something that is not your own file in your home"><translation>ist eine Verknüpfung mit etwas, das nicht Ihre eigene Datei in Ihrem persönlichen Ordner ist</translation></message>
    <message id="is in use as a program or as swap space"><translation>wird als Programm oder Auslagerung benutzt</translation></message>
    <message id="is kept out of copy-on-write, and so out of sharing"><translation>ist von Copy-on-write ausgenommen und damit vom Teilen</translation></message>
    <message id="is no file that a login item could be in"><translation>ist keine Datei, in der ein Anmeldeobjekt stehen könnte</translation></message>
    <message id="is no program, document or folder"><translation>ist weder Programm noch Dokument oder Ordner</translation></message>
    <message id="is part of the desktop that is running"><translation>gehört zum laufenden Desktop</translation></message>
    <message id="is the kernel that is running"><translation>ist der laufende Kernel</translation></message>
    <message id="its file system cannot share blocks"><translation>sein Dateisystem kann keine Blöcke teilen</translation></message>
    <message id="its file system refuses to share its blocks"><translation>sein Dateisystem lehnt das Teilen der Blöcke ab</translation></message>
    <message id="its volume can only be read"><translation>sein Datenträger lässt sich nur lesen</translation></message>
    <message id="lies behind a link"><translation>liegt hinter einer Verknüpfung</translation></message>
    <message id="lies in the trash already"><translation>liegt schon im Papierkorb</translation></message>
    <message id="lies on another file system than the copy that stays"><translation>liegt auf einem anderen Dateisystem als die Kopie, die bleibt</translation></message>
    <message id="lies on another volume"><translation>liegt auf einem anderen Datenträger</translation></message>
    <message id="lies outside of this system's folders"><translation>liegt außerhalb der Ordner dieses Systems</translation></message>
    <message id="names no program to start"><translation>nennt kein Programm, das gestartet werden könnte</translation></message>
    <message id="no other copy of it is left"><translation>keine andere Kopie davon ist übrig</translation></message>
    <message id="part of every standard installation"><translation>Teil jeder Standardinstallation</translation></message>
    <message id="part of the collection %1"><translation>Teil der Sammlung %1</translation></message>
    <message id="part of the system"><translation>Teil des Systems</translation></message>
    <message id="starts &quot;%1&quot;, which is not there"><translation>startet „%1“, das es nicht gibt</translation></message>
    <message id="starts a Flatpak that is not installed"><translation>startet ein Flatpak, das nicht installiert ist</translation></message>
    <message id="starts the system"><translation>startet das System</translation></message>
    <message id="the Flatpak is not installed"><translation>das Flatpak ist nicht installiert</translation></message>
    <message id="the copy that stays cannot be read"><translation>die Kopie, die bleibt, ist nicht lesbar</translation></message>
    <message id="the copy that stays has changed since it was found"><translation>die Kopie, die bleibt, hat sich seit der Suche geändert</translation></message>
    <message id="the copy that stays has other contents"><translation>die Kopie, die bleibt, hat anderen Inhalt</translation></message>
    <message id="the copy that stays is this very file"><translation>die Kopie, die bleibt, ist dieselbe Datei</translation></message>
    <message id="the mount table cannot be read"><translation>die Einhängetabelle ist nicht lesbar</translation></message>
    <message id="the snap is not installed"><translation>das Snap ist nicht installiert</translation></message>
    <message id="the system cannot do without it"><translation>das System braucht es</translation></message>
    <message id="what an application wrote that was removed"><translation>was ein Programm geschrieben hat, das entfernt wurde</translation></message>
    <message id="without it the system's own entry would start; hide it instead"><translation>ohne ihn würde der Eintrag des Systems starten; blenden Sie ihn stattdessen aus</translation></message>
    <message id="不是数字"><translation>Das ist keine Zahl.</translation></message>
</context>
</TS>
