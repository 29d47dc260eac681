<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="ABOUT_TEXT"><translation>Finds what fills your disks, shows it before it goes, and keeps an eye on the free space of every volume.</translation></message>
    <message id="ABOUT_TITLE"><translation>About Brightsweep</translation></message>
    <message id="ABOUT_VERSION"><translation>Version %1</translation></message>
    <message id="CANCEL"><translation>Cancel</translation></message>
    <message id="CANNOT_OPEN_FINDER"><translation>This volume cannot be opened in the file manager.</translation></message>
    <message id="CLEAN_FILES_COUNT"><translation>Items cleaned:</translation></message>
    <message id="CLEAN_FILES_SIZE"><translation>Space freed:</translation></message>
    <message id="CLEAN_OUTDATED"><translation>A quick clean has removed items since this scan.</translation></message>
    <message id="CLOSE"><translation>Close</translation></message>
    <message id="DESC_CLEAN_DOWNLOADS"><translation>Everything in your downloads folder. Look through it first: these are your own files.</translation></message>
    <message id="DESC_CLEAN_SYS_CACHES"><translation>Packages and data that the system keeps to save a second download or computation. It fetches or makes them anew when they are needed.</translation></message>
    <message id="DESC_CLEAN_SYS_LOGS"><translation>Records of installations, upgrades and crashes. They only help in looking into past trouble.</translation></message>
    <message id="DESC_CLEAN_TRASH"><translation>Files that you have thrown away, on all your volumes. Once cleaned they cannot be put back.</translation></message>
    <message id="DESC_CLEAN_USR_CACHES"><translation>What your programs keep to be faster. They build it up again; the first start afterwards may take a little longer.</translation></message>
    <message id="DESC_CLEAN_USR_LOGS"><translation>Records that your programs wrote about their own work. They only help in looking into past trouble.</translation></message>
    <message id="DESC_FREESPACE_MONITOR"><translation>Watches the free space of every volume and warns before one runs full.</translation></message>
    <message id="DESC_UNINSTALL"><translation>Removes applications together with the settings, caches and logs that they leave behind.</translation></message>
    <message id="DISK_IMAGE"><translation>Disk Images</translation></message>
    <message id="DRIVE_STAYS"><translation>Its drive could not be released.</translation></message>
    <message id="EMPTY_DISK_USAGE"><translation>Draws as rings which folders fill a volume, down to the last file.</translation></message>
    <message id="EMPTY_DUPLICATES"><translation>Finds files with the same content, whatever they are called and wherever they are.</translation></message>
    <message id="EMPTY_LOGIN_ITEMS"><translation>Lists what starts with your session, and lets you add to it or take from it.</translation></message>
    <message id="EMPTY_MEMORY"><translation>Gives memory that programs no longer use back to those that need it.</translation></message>
    <message id="EMPTY_PREFERENCES"><translation>Sets what is cleaned, when Brightsweep warns, and how it starts.</translation></message>
    <message id="EMPTY_SCAN"><translation>Finds caches, logs, trash and old downloads, and shows every item before anything is removed.</translation></message>
    <message id="EMPTY_UNINSTALL"><translation>Removes a program together with the settings, caches and logs that it leaves behind.</translation></message>
    <message id="EXTERNAL_STORAGE"><translation>External Storage</translation></message>
    <message id="FREE_MEMORY"><translation>Memory</translation></message>
    <message id="FREE_MEMORY_NOW"><translation>Free Memory</translation></message>
    <message id="LEFT_OUT_FOREIGN"><translation>%1 is not cleaned, since it belongs to somebody else.</translation></message>
    <message id="LEFT_OUT_KEPT"><translation>%1 is not cleaned, since it holds more than its category.</translation></message>
    <message id="LEFT_OUT_TOP"><translation>%1 is not cleaned, since it is the top of a volume.</translation></message>
    <message id="LOCAL_STORAGE"><translation>Local Storage</translation></message>
    <message id="NETWOR_STORAGE"><translation>Network Storage</translation></message>
    <message id="NOTHING_RELEASED"><translation>No memory could be freed.</translation></message>
    <message id="NO_FOLDER_CONTENT"><translation>No folders are chosen for cleaning. Choose them in Preferences.</translation></message>
    <message id="NO_HAVE_REMOVABLE"><translation>There is nothing to eject.</translation></message>
    <message id="OK"><translation>OK</translation></message>
    <message id="OPEN_APPLICATIONS"><translation>Open Applications</translation></message>
    <message id="OPEN_AUTOSTART"><translation>Open Autostart Folder</translation></message>
    <message id="OPEN_HOME"><translation>Open Home Folder</translation></message>
    <message id="QUICK_CLEAN"><translation>Clean</translation></message>
    <message id="QUICK_CLEAN_ASK"><translation>Everything in these folders will be removed.</translation></message>
    <message id="REMOVAL_NO_LOCK"><translation>Whether something else is being removed cannot be told, so that nothing is removed now.</translation></message>
    <message id="REMOVAL_RUNS"><translation>Something is being removed already (%1, process %2). Wait until that has ended.</translation></message>
    <message id="ROW_WARNS"><translation>Low</translation></message>
    <message id="SHOW_LOG"><translation>Show Log</translation></message>
    <message id="SHOW_VOLUMES"><translation>Show Volumes</translation></message>
    <message id="STAYED_IN_USE" numerus="yes"><translation><numerusform>%n item is in use</numerusform><numerusform>%n items are in use</numerusform></translation></message>
    <message id="STAYED_OTHER" numerus="yes"><translation><numerusform>%n item could not be removed</numerusform><numerusform>%n items could not be removed</numerusform></translation></message>
    <message id="STAYED_READ_ONLY" numerus="yes"><translation><numerusform>%n item is on a read-only volume</numerusform><numerusform>%n items are on a read-only volume</numerusform></translation></message>
    <message id="STAYED_RIGHTS" numerus="yes"><translation><numerusform>%n item needs administrator rights</numerusform><numerusform>%n items need administrator rights</numerusform></translation></message>
    <message id="SUPER_DRIVER"><translation>Optical Drives</translation></message>
    <message id="TITLE_CLEAN_DOWNLOADS"><translation>User Downloads</translation></message>
    <message id="TITLE_CLEAN_SYS_CACHES"><translation>System Caches</translation></message>
    <message id="TITLE_CLEAN_SYS_LOGS"><translation>System Logs</translation></message>
    <message id="TITLE_CLEAN_SYS_MYMAC"><translation>My Computer</translation></message>
    <message id="TITLE_CLEAN_TRASH"><translation>User Trash</translation></message>
    <message id="TITLE_CLEAN_USR_CACHES"><translation>User Caches</translation></message>
    <message id="TITLE_CLEAN_USR_LOGS"><translation>User Logs</translation></message>
    <message id="TITLE_FREESPACE_MONITOR"><translation>Free Space Monitor</translation></message>
    <message id="TITLE_UNINSTALL"><translation>Uninstall Applications</translation></message>
    <message id="VOLUME_UNMOUNTED"><translation>%1 is unmounted.</translation></message>
</context>
</TS>
