<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name></name>
    <message id="%@ freed."><translation>%1 freed.</translation></message>
    <message id="%@ is cleaned"><translation>%1 is cleaned</translation></message>
    <message id="%@ is mounted successfully!"><translation>%1 is mounted successfully!</translation></message>
    <message id="%@ is unmounted successfully!"><translation>%1 is unmounted successfully!</translation></message>
    <message id="%@ space has been recovered since last clean %@. The capacity of startup disk is %@, and %@ is available."><translation>%1 space has been recovered since last clean %2. The capacity of startup disk is %3, and %4 is available.</translation></message>
    <message id="%d items are selected."><translation>%1 items are selected.</translation></message>
    <message id="%d of %d selected, %@ will free up."><translation>%1 of %2 selected, %3 will free up.</translation></message>
    <message id="%d of %d selected."><translation>%1 of %2 selected.</translation></message>
    <message id="%lu files in %@."><translation>%1 files in %2.</translation></message>
    <message id="ABOUT_CHART"><translation>Ring chart by %1</translation></message>
    <message id="ABOUT_TEXT"><translation>Finds what fills your disks, shows it before it goes, and keeps an eye on the free space of every volume.</translation></message>
    <message id="ABOUT_TITLE"><translation>About Brightsweep</translation></message>
    <message id="ABOUT_VERSION"><translation>Version %1</translation></message>
    <message id="ALARM_QUIET"><translation>%1% is free now: no warning.</translation></message>
    <message id="ALARM_WARNS"><translation>%1% is free now: it warns.</translation></message>
    <message id="AVAILABLE_BEFORE_AFTER"><translation>Available to programs: %1 before, %2 now. Files will be read from disk again.</translation></message>
    <message id="AVAILABLE_UNCHANGED"><translation>Available to programs: %1, as before. Files will be read from disk again.</translation></message>
    <message id="About"><translation>About</translation></message>
    <message id="Add login item"><translation>Add login item</translation></message>
    <message id="All"><translation>All</translation></message>
    <message id="All Applications"><translation>All Applications</translation></message>
    <message id="Applications"><translation>Applications</translation></message>
    <message id="Archives"><translation>Archives</translation></message>
    <message id="Are you sure you want to continue?"><translation>Are you sure you want to continue?</translation></message>
    <message id="Are you sure you want to delete all the duplicate files?"><translation>Are you sure you want to delete all the duplicate files?</translation></message>
    <message id="BACK"><translation>Back</translation></message>
    <message id="BADGE_RUNNING"><translation>running</translation></message>
    <message id="BADGE_SYSTEM"><translation>part of the system</translation></message>
    <message id="CANCEL"><translation>Cancel</translation></message>
    <message id="CANNOT_EJECT"><translation>%1 cannot be ejected.</translation></message>
    <message id="CANNOT_OPEN_FINDER"><translation>This volume cannot be opened in the file manager.</translation></message>
    <message id="CAPACITY"><translation>The capacity of startup disk is %1, and %2 is available.</translation></message>
    <message id="CATEGORIES"><translation>Categories</translation></message>
    <message id="CATEGORY_EMPTY"><translation>Nothing here</translation></message>
    <message id="CATEGORY_EMPTY_TEXT"><translation>This category holds nothing that could go.</translation></message>
    <message id="CHOOSE"><translation>Choose</translation></message>
    <message id="CHOOSE_FOLDER"><translation>Choose Folder…</translation></message>
    <message id="CHOOSE_PATH"><translation>Choose a path to search</translation></message>
    <message id="CLEAN"><translation>Clean</translation></message>
    <message id="CLEAN_FILES_COUNT"><translation>Items cleaned:</translation></message>
    <message id="CLEAN_FILES_SIZE"><translation>Space freed:</translation></message>
    <message id="CLEAN_OUTDATED"><translation>A quick clean has removed items since this scan.</translation></message>
    <message id="CLOSE"><translation>Close</translation></message>
    <message id="COLUMN_ID"><translation>Identifier</translation></message>
    <message id="COLUMN_INSTALLED"><translation>Installed</translation></message>
    <message id="COPY_PATH"><translation>Copy path</translation></message>
    <message id="CPU Brand:"><translation>CPU Brand:</translation></message>
    <message id="CPU Vendor:"><translation>CPU Vendor:</translation></message>
    <message id="Choose"><translation>Choose</translation></message>
    <message id="Choose a login item"><translation>Choose a login item</translation></message>
    <message id="Clean"><translation>Clean</translation></message>
    <message id="Cleaned:"><translation>Cleaned:</translation></message>
    <message id="Click lock to get a higer privileges."><translation>Click the lock to get higher privileges.</translation></message>
    <message id="Created: %@"><translation>Created: %1</translation></message>
    <message id="DESC_CLEAN_DOWNLOADS"><translation>Everything in your downloads folder. Look through it first: these are your own files.</translation></message>
    <message id="DESC_CLEAN_SYS_CACHES"><translation>Packages and data that the system keeps to save a second download or computation. It fetches or makes them anew when they are needed.</translation></message>
    <message id="DESC_CLEAN_SYS_LOGS"><translation>Records of installations, upgrades and crashes. They only help in looking into past trouble.</translation></message>
    <message id="DESC_CLEAN_TRASH"><translation>Files that you have thrown away, on all your volumes. Once cleaned they cannot be put back.</translation></message>
    <message id="DESC_CLEAN_USR_CACHES"><translation>What your programs keep to be faster. They build it up again; the first start afterwards may take a little longer.</translation></message>
    <message id="DESC_CLEAN_USR_LOGS"><translation>Records that your programs wrote about their own work. They only help in looking into past trouble.</translation></message>
    <message id="DESC_FREESPACE_MONITOR"><translation>Watches the free space of every volume and warns before one runs full.</translation></message>
    <message id="DESC_UNINSTALL"><translation>Removes applications together with the settings, caches and logs that they leave behind.</translation></message>
    <message id="DISK_IMAGE"><translation>Disk Images</translation></message>
    <message id="DOWNLOADS_TICKED" numerus="yes"><translation><numerusform>%n item of your downloads is ticked, %1.</numerusform><numerusform>%n items of your downloads are ticked, %1.</numerusform></translation></message>
    <message id="DRIVE_STAYS"><translation>Its drive could not be released.</translation></message>
    <message id="DUP_ASK" numerus="yes"><translation><numerusform>Remove %n file and free %1?</numerusform><numerusform>Remove %n files and free %1?</numerusform></translation></message>
    <message id="DUP_BUSY"><translation>A search or a removal is running here. Give the folder once it has ended.</translation></message>
    <message id="DUP_DETAILS"><translation>Details</translation></message>
    <message id="DUP_DROP"><translation>Drop a folder here to find the files in it that have the same content, whatever they are called.</translation></message>
    <message id="DUP_FILTER"><translation>Filter by name or folder</translation></message>
    <message id="DUP_FREED"><translation>Would free</translation></message>
    <message id="DUP_FREED_SO_FAR"><translation>freed so far</translation></message>
    <message id="DUP_FREES"><translation>Together they are %1 large. What other names of a file, shared blocks and holes take of that does not come back.</translation></message>
    <message id="DUP_GROUP_NOTE" numerus="yes"><translation><numerusform>%1 wasted · %n file</numerusform><numerusform>%1 wasted · %n files</numerusform></translation></message>
    <message id="DUP_GROUP_STAYED" numerus="yes"><translation><numerusform>%n file stayed</numerusform><numerusform>%n files stayed</numerusform></translation></message>
    <message id="DUP_HARD_LINK" numerus="yes"><translation><numerusform>one of %n name of one file</numerusform><numerusform>one of %n names of one file</numerusform></translation></message>
    <message id="DUP_HIDDEN_TICKS" numerus="yes"><translation><numerusform>%n ticked file is not shown here. Remove takes it too.</numerusform><numerusform>%n ticked files are not shown here. Remove takes them too.</numerusform></translation></message>
    <message id="DUP_KEEP_FIRST"><translation>Keep the one found first</translation></message>
    <message id="DUP_KEEP_FOLDER"><translation>Keep what lies below a folder…</translation></message>
    <message id="DUP_KEEP_NEWEST"><translation>Keep the newest</translation></message>
    <message id="DUP_KEEP_OLDEST"><translation>Keep the oldest</translation></message>
    <message id="DUP_KEEP_SHORTEST"><translation>Keep the one with the shortest path</translation></message>
    <message id="DUP_KEEP_THIS"><translation>Keep this one</translation></message>
    <message id="DUP_KEPT_FOLDER"><translation>Choose the folder whose files stay</translation></message>
    <message id="DUP_LIMIT"><translation>Files larger than %1 · Change…</translation></message>
    <message id="DUP_LINK"><translation>link</translation></message>
    <message id="DUP_MORE_PLACES" numerus="yes"><translation><numerusform>and %n more</numerusform><numerusform>and %n more</numerusform></translation></message>
    <message id="DUP_NONE"><translation>No duplicates found</translation></message>
    <message id="DUP_NONE_LEFT"><translation>No duplicates left</translation></message>
    <message id="DUP_NOT_LOCAL"><translation>It lies on another machine and is not looked at.</translation></message>
    <message id="DUP_NOT_SHOWN" numerus="yes"><translation><numerusform>%n of them is not shown at the moment.</numerusform><numerusform>%n of them are not shown at the moment.</numerusform></translation></message>
    <message id="DUP_NO_CLASS"><translation>Without class</translation></message>
    <message id="DUP_NO_FOLDER"><translation>There is no such folder</translation></message>
    <message id="DUP_NO_LIMIT"><translation>Files of every size · Change…</translation></message>
    <message id="DUP_ONE_FOLDER"><translation>%1 All of them lie in %2.</translation></message>
    <message id="DUP_ONE_STAYS"><translation>Of each group at least one file stays. It is compared with the others once more, byte by byte, before they go.</translation></message>
    <message id="DUP_PLACES"><translation>Where they lie</translation></message>
    <message id="DUP_RECENT"><translation>Searched last</translation></message>
    <message id="DUP_REMOVAL_STOPPED"><translation>Stopped.</translation></message>
    <message id="DUP_REMOVE"><translation>Remove</translation></message>
    <message id="DUP_REMOVED" numerus="yes"><translation><numerusform>%n file removed, %1 freed.</numerusform><numerusform>%n files removed, %1 freed.</numerusform></translation></message>
    <message id="DUP_SEARCHING"><translation>Searching %1</translation></message>
    <message id="DUP_SHARE"><translation>Share Blocks</translation></message>
    <message id="DUP_SHARED" numerus="yes"><translation><numerusform>%n file shares its blocks now, %1 freed.</numerusform><numerusform>%n files share their blocks now, %1 freed.</numerusform></translation></message>
    <message id="DUP_SHARES"><translation>shares its blocks</translation></message>
    <message id="DUP_SHARE_ASKING"><translation>Asking the file system whether it can do that…</translation></message>
    <message id="DUP_STAYED" numerus="yes"><translation><numerusform>%n file stayed; its row says why.</numerusform><numerusform>%n files stayed; their rows say why.</numerusform></translation></message>
    <message id="DUP_STOPPED"><translation>The search was stopped.</translation></message>
    <message id="DUP_TICK"><translation>Tick</translation></message>
    <message id="DUP_TICK_TIP"><translation>Tick by a rule that keeps one file of each group</translation></message>
    <message id="DUP_TIP_REMOVE"><translation>They cannot be put back afterwards.</translation></message>
    <message id="DUP_TIP_SHARE"><translation>Every file stays and takes its content from the blocks of the one that is kept. Nothing is lost, and the space comes back.</translation></message>
    <message id="DUP_TIP_TRASH"><translation>They can be put back, and take up room until the trash is emptied.</translation></message>
    <message id="DUP_TRASHED" numerus="yes"><translation><numerusform>%n file moved to the trash.</numerusform><numerusform>%n files moved to the trash.</numerusform></translation></message>
    <message id="DUP_UNDO"><translation>Undo the last ticks</translation></message>
    <message id="DUP_UNREADABLE"><translation>It cannot be opened.</translation></message>
    <message id="DUP_UNTICK"><translation>Untick all</translation></message>
    <message id="DUP_WASTED" numerus="yes"><translation><numerusform>wasted by duplicates in %n group</numerusform><numerusform>wasted by duplicates in %n groups</numerusform></translation></message>
    <message id="DUP_WHOLE_GROUPS" numerus="yes"><translation><numerusform>Of %n group all files go: nothing of it stays.</numerusform><numerusform>Of %n groups all files go: nothing of them stays.</numerusform></translation></message>
    <message id="Daily"><translation>Daily</translation></message>
    <message id="Deleting items..."><translation>Deleting items...</translation></message>
    <message id="Disk Usage"><translation>Disk Usage</translation></message>
    <message id="Documents"><translation>Documents</translation></message>
    <message id="Downloads folder is selected to clean. We recommend you to view this folder for anything useful before emptying it."><translation>Downloads folder is selected to clean. We recommend you to view this folder for anything useful before emptying it.</translation></message>
    <message id="Duplicates"><translation>Duplicates</translation></message>
    <message id="EJECT"><translation>Eject %1</translation></message>
    <message id="EMPTY_SCAN"><translation>Finds caches, logs, trash and old downloads, and shows every item before anything is removed.</translation></message>
    <message id="EXACT_SHARES"><translation>Exact Shares</translation></message>
    <message id="EXTERNAL_STORAGE"><translation>External Storage</translation></message>
    <message id="Eject All"><translation>Eject All</translation></message>
    <message id="Ejecting…"><translation>Ejecting…</translation></message>
    <message id="FAILED_BUSY"><translation>in use</translation></message>
    <message id="FAILED_CHANGED"><translation>changed since</translation></message>
    <message id="FAILED_OTHER"><translation>not removed</translation></message>
    <message id="FAILED_PROTECTED"><translation>protected</translation></message>
    <message id="FAILED_READ_ONLY"><translation>read-only</translation></message>
    <message id="FAILED_RIGHTS"><translation>needs admin</translation></message>
    <message id="FAILED_STOPPED"><translation>stopped</translation></message>
    <message id="FAILED_VOLUME"><translation>holds a volume</translation></message>
    <message id="FILTER"><translation>Filter by name</translation></message>
    <message id="FILTER_NO_MATCH"><translation>No name matches the filter.</translation></message>
    <message id="FOLD_CLOSED"><translation>folded</translation></message>
    <message id="FOLD_OPEN"><translation>unfolded</translation></message>
    <message id="FOUND_SO_FAR"><translation>found so far</translation></message>
    <message id="FREE_BEFORE_AFTER"><translation>Free space: %1 before, %2 now.</translation></message>
    <message id="FREE_MEMORY"><translation>Memory</translation></message>
    <message id="FREE_OF"><translation>%1 free of %2</translation></message>
    <message id="Failed to uninstall the selected application(s). Please refer to Help for more info."><translation>Failed to uninstall the selected application(s). Please refer to Help for more info.</translation></message>
    <message id="Fast Clean"><translation>Fast Clean</translation></message>
    <message id="Free Memory"><translation>Free Memory</translation></message>
    <message id="Free Space"><translation>Free Space</translation></message>
    <message id="Free Space Monitor"><translation>Free Space Monitor</translation></message>
    <message id="Free Space:"><translation>Free Space:</translation></message>
    <message id="FreeSize:"><translation>FreeSize:</translation></message>
    <message id="Freeing..."><translation>Freeing...</translation></message>
    <message id="HIDDEN_TICKS" numerus="yes"><translation><numerusform>The filter hides %n ticked item. Clean removes it too.</numerusform><numerusform>The filter hides %n ticked items. Clean removes them too.</numerusform></translation></message>
    <message id="Help"><translation>Help</translation></message>
    <message id="Hostname:"><translation>Hostname:</translation></message>
    <message id="IN_USE_BY"><translation>In use by %1</translation></message>
    <message id="ITEMS"><translation>Items</translation></message>
    <message id="KIND_APPIMAGE"><translation>AppImage</translation></message>
    <message id="KIND_BUNDLE"><translation>Bundle</translation></message>
    <message id="KIND_FLATPAK"><translation>Flatpak</translation></message>
    <message id="KIND_FOLDER"><translation>Own folder</translation></message>
    <message id="KIND_PACKAGE"><translation>Package</translation></message>
    <message id="KIND_SNAP"><translation>Snap</translation></message>
    <message id="LAUNCH_FAILED"><translation>Whether Brightsweep starts at login could not be changed: %1</translation></message>
    <message id="LEFT_BEHIND_ASK" numerus="yes"><translation><numerusform>Remove %n item, %1?</numerusform><numerusform>Remove %n items, %1?</numerusform></translation></message>
    <message id="LEFT_BEHIND_COUNT" numerus="yes"><translation><numerusform>%n item left behind</numerusform><numerusform>%n items left behind</numerusform></translation></message>
    <message id="LEFT_BEHIND_NONE"><translation>Nothing was found that applications that are gone have left behind.</translation></message>
    <message id="LEFT_BEHIND_REMOVED" numerus="yes"><translation><numerusform>%n item removed, %1 freed.</numerusform><numerusform>%n items removed, %1 freed.</numerusform></translation></message>
    <message id="LEFT_BEHIND_REMOVING"><translation>Removing…</translation></message>
    <message id="LEFT_BEHIND_SEARCHING"><translation>Looking for what was left behind…</translation></message>
    <message id="LEFT_BEHIND_STAYED" numerus="yes"><translation><numerusform>%n item stayed.</numerusform><numerusform>%n items stayed.</numerusform></translation></message>
    <message id="LEFT_CACHE"><translation>cache</translation></message>
    <message id="LEFT_CONFIG"><translation>settings</translation></message>
    <message id="LEFT_DATA"><translation>data</translation></message>
    <message id="LEFT_ENTRY"><translation>menu entry</translation></message>
    <message id="LEFT_OUT_FOREIGN"><translation>%1 is not cleaned, since it belongs to somebody else.</translation></message>
    <message id="LEFT_OUT_KEPT"><translation>%1 is not cleaned, since it holds more than its category.</translation></message>
    <message id="LEFT_OUT_TOP"><translation>%1 is not cleaned, since it is the top of a volume.</translation></message>
    <message id="LEFT_STATE"><translation>state</translation></message>
    <message id="LEFT_SYSTEM"><translation>settings of the system</translation></message>
    <message id="LOCAL_STORAGE"><translation>Local Storage</translation></message>
    <message id="LOCK_NO_AGENT"><translation>No program here can ask for administrator rights. Start a polkit agent, or start Brightsweep as an administrator.</translation></message>
    <message id="LOGIN_ADD"><translation>Add…</translation></message>
    <message id="LOGIN_ADD_FOLDER"><translation>Add Folder…</translation></message>
    <message id="LOGIN_BAD_LINE"><translation>may not start because not every desktop understands this line: %1</translation></message>
    <message id="LOGIN_BYTE_ORDER_MARK"><translation>may not start because its file begins with a byte order mark</translation></message>
    <message id="LOGIN_CANNOT_READ"><translation>Your login items cannot be read</translation></message>
    <message id="LOGIN_CANNOT_READ_HOW"><translation>The folder “autostart” in your settings cannot be read: %1</translation></message>
    <message id="LOGIN_DAMAGED_MARK"><translation>damaged</translation></message>
    <message id="LOGIN_DELETE"><translation>Remove the login item</translation></message>
    <message id="LOGIN_DROP"><translation>or drop programs, documents and folders on the list</translation></message>
    <message id="LOGIN_ELSEWHERE_MARK"><translation>not here</translation></message>
    <message id="LOGIN_ENTRY"><translation>Entry</translation></message>
    <message id="LOGIN_FAILED"><translation>%1: %2</translation></message>
    <message id="LOGIN_HIDDEN"><translation>Hidden</translation></message>
    <message id="LOGIN_HIDDEN_HOW"><translation>A hidden item stays in the list and does not start.</translation></message>
    <message id="LOGIN_HIDE"><translation>Hide it, so that it does not start</translation></message>
    <message id="LOGIN_LINE_ENDS"><translation>may not start because not every desktop understands how its lines end</translation></message>
    <message id="LOGIN_MISSING"><translation>what it starts is no longer there</translation></message>
    <message id="LOGIN_MISSING_MARK"><translation>missing</translation></message>
    <message id="LOGIN_NAME_TOO_LONG"><translation>may not start because the name of its file is too long</translation></message>
    <message id="LOGIN_NEEDS"><translation>does not start because this program is not installed: %1</translation></message>
    <message id="LOGIN_NONE"><translation>Nothing of yours starts with the session</translation></message>
    <message id="LOGIN_NONE_HOW"><translation>Add a program, a document or a folder, or drop it here.</translation></message>
    <message id="LOGIN_NOT_EXECUTABLE"><translation>does not start because this is no program that you may run: %1</translation></message>
    <message id="LOGIN_NOT_IN"><translation>does not start in this desktop: %1</translation></message>
    <message id="LOGIN_NOT_UTF8"><translation>may not start because its file holds text that is not UTF-8</translation></message>
    <message id="LOGIN_NO_APPLICATION"><translation>does not start because it is no application</translation></message>
    <message id="LOGIN_NO_COMMAND"><translation>does not start because it names no program</translation></message>
    <message id="LOGIN_ONLY_IN"><translation>starts in other desktops only: %1</translation></message>
    <message id="LOGIN_OPEN"><translation>Start it now</translation></message>
    <message id="LOGIN_SENTENCE"><translation>These start with your session. A hidden one stays in the list and does not start.</translation></message>
    <message id="LOGIN_SHOW"><translation>Let it start</translation></message>
    <message id="LOGIN_STARTS"><translation>starts with your session</translation></message>
    <message id="LOGIN_STAYS_MARK"><translation>will not start</translation></message>
    <message id="LOGIN_SYSTEM"><translation>Also started by the system (%1)</translation></message>
    <message id="LOGIN_SYSTEM_NOTE"><translation>The system starts these for everybody. A switch is for you alone, and can be taken back.</translation></message>
    <message id="LOGIN_TWO_VALUES"><translation>may start something else because its file says this twice: %1</translation></message>
    <message id="LOGIN_UNREADABLE"><translation>its file cannot be read</translation></message>
    <message id="LOGIN_UNREADABLE_MARK"><translation>unreadable</translation></message>
    <message id="LOGIN_WAITING"><translation>Waiting for your home folder to answer…</translation></message>
    <message id="LOW_SPACE"><translation>Low disk space</translation></message>
    <message id="LOW_SPACE_OF"><translation>%1: %2 of %3 are free.</translation></message>
    <message id="Launch at login"><translation>Launch at login</translation></message>
    <message id="Left behind"><translation>Left behind</translation></message>
    <message id="Login Items"><translation>Login Items</translation></message>
    <message id="MEMORY_ACTIVE"><translation>Active</translation></message>
    <message id="MEMORY_AVAILABLE"><translation>Available to programs</translation></message>
    <message id="MEMORY_CHART"><translation>Memory chart</translation></message>
    <message id="MEMORY_COMPRESSED"><translation>Compressed</translation></message>
    <message id="MEMORY_FILE_CACHE"><translation>File cache</translation></message>
    <message id="MEMORY_FREE"><translation>Free</translation></message>
    <message id="MEMORY_INACTIVE"><translation>Inactive</translation></message>
    <message id="MEMORY_NO_SWAP"><translation>none</translation></message>
    <message id="MEMORY_PARTS"><translation>Free: %1, inactive: %2</translation></message>
    <message id="MEMORY_PRESSURE"><translation>Pressure</translation></message>
    <message id="MEMORY_RELEASE_NOTE"><translation>Gives back memory in which the system keeps copies of files. Programs keep all of theirs, and files are read from disk again when they are needed: nothing gets faster.</translation></message>
    <message id="MEMORY_SWAP"><translation>Swap</translation></message>
    <message id="MEMORY_SWAP_OF"><translation>%1 of %2</translation></message>
    <message id="MEMORY_TOTAL"><translation>Total</translation></message>
    <message id="MEMORY_USED"><translation>Used</translation></message>
    <message id="MEMORY_WIRED"><translation>Wired</translation></message>
    <message id="MENU"><translation>Menu</translation></message>
    <message id="MOVE_TO_TRASH"><translation>Move to Trash</translation></message>
    <message id="Main Window"><translation>Main Window</translation></message>
    <message id="Memory"><translation>Memory</translation></message>
    <message id="Memory:"><translation>Memory:</translation></message>
    <message id="Model Identifier:"><translation>Model Identifier:</translation></message>
    <message id="Modified"><translation>Modified</translation></message>
    <message id="Monthly"><translation>Monthly</translation></message>
    <message id="Music"><translation>Music</translation></message>
    <message id="My Mac"><translation>My Computer</translation></message>
    <message id="NETWOR_STORAGE"><translation>Network Storage</translation></message>
    <message id="NO"><translation>No</translation></message>
    <message id="NOTHING_RELEASED"><translation>No memory could be freed.</translation></message>
    <message id="NOTHING_RELEASED_WHY"><translation>No memory could be freed. The system may allow it to an administrator alone; the log says what the release tool met.</translation></message>
    <message id="NOTHING_TO_CLEAN"><translation>Nothing to clean</translation></message>
    <message id="NOTHING_TO_CLEAN_WHY"><translation>None of the six categories holds anything that could go.</translation></message>
    <message id="NOT_KNOWN"><translation>not known</translation></message>
    <message id="NO_FOLDER_CONTENT"><translation>No folders are chosen for cleaning. Choose them in Preferences.</translation></message>
    <message id="NO_GUIDE"><translation>The guide cannot be opened.</translation></message>
    <message id="NO_HAVE_REMOVABLE"><translation>There is nothing to eject.</translation></message>
    <message id="Name"><translation>Name</translation></message>
    <message id="No items found in selected folder. Please try another one."><translation>No items found in selected folder. Please try another one.</translation></message>
    <message id="OK"><translation>OK</translation></message>
    <message id="OPEN_DOWNLOADS"><translation>Open Downloads</translation></message>
    <message id="OS Release:"><translation>OS Release:</translation></message>
    <message id="OS Type:"><translation>OS Type:</translation></message>
    <message id="Open"><translation>Open</translation></message>
    <message id="Others"><translation>Others</translation></message>
    <message id="PADLOCK"><translation>Padlock</translation></message>
    <message id="PARTLY_TICKED"><translation>partly ticked</translation></message>
    <message id="PERCENT"><translation>%1%</translation></message>
    <message id="PREF_ALARMS"><translation>Alarms</translation></message>
    <message id="PREF_ALWAYS_ASKS"><translation>It always asks before it takes anything of your downloads.</translation></message>
    <message id="PREF_CATEGORIES_IN_USE"><translation>A scan or a clean is under way; it can be changed afterwards.</translation></message>
    <message id="PREF_CATEGORY_WORDS"><translation>What is ticked after a scan, and what a quick clean takes.</translation></message>
    <message id="PREF_CHECK_INTERVAL"><translation>How often to look for updates</translation></message>
    <message id="PREF_CHECK_UPDATES"><translation>Look for updates</translation></message>
    <message id="PREF_CLEANING"><translation>Cleaning</translation></message>
    <message id="PREF_DESKTOP_LANGUAGE"><translation>As the desktop</translation></message>
    <message id="PREF_DUPLICATE_LIMIT"><translation>Duplicates: files larger than</translation></message>
    <message id="PREF_HIDDEN_FILES"><translation>Duplicates: hidden files as well</translation></message>
    <message id="PREF_HIDE_ITEM"><translation>Hide the icon in the tray</translation></message>
    <message id="PREF_LANGUAGE"><translation>Language</translation></message>
    <message id="PREF_LAUNCH"><translation>Launch</translation></message>
    <message id="PREF_LOG"><translation>Log</translation></message>
    <message id="PREF_MAY_ASK"><translation>May ask for administrator rights when items stay</translation></message>
    <message id="PREF_MEMORY_ALARM"><translation>Warn when programs have no more memory available than</translation></message>
    <message id="PREF_NO_UPDATES"><translation>Nobody offers updates to this build; your package manager does, where it comes from a package.</translation></message>
    <message id="PREF_OPEN_LOG"><translation>Open the log</translation></message>
    <message id="PREF_PROGRAM"><translation>This Program</translation></message>
    <message id="PREF_RESTART_TIP"><translation>Starts Brightsweep anew, in the other language.</translation></message>
    <message id="PREF_SEARCHES"><translation>Searches</translation></message>
    <message id="PREF_SPACE_ALARM"><translation>Warn when a volume has no more free than</translation></message>
    <message id="PREF_SYSTEM_FILES"><translation>Duplicates: system files as well</translation></message>
    <message id="PREF_UNIT_OF"><translation>Unit of “%1”</translation></message>
    <message id="PREF_UPDATES"><translation>Updates</translation></message>
    <message id="PREF_USAGE_LIMIT"><translation>Disk usage list: from</translation></message>
    <message id="PRESSURE_HIGH"><translation>high</translation></message>
    <message id="PRESSURE_NONE"><translation>none</translation></message>
    <message id="PRESSURE_SOME"><translation>some</translation></message>
    <message id="PRESSURE_TIP"><translation>Programs waited for memory for %1% of the last ten seconds.</translation></message>
    <message id="PROCESS_COUNT" numerus="yes"><translation><numerusform>%n process</numerusform><numerusform>%n processes</numerusform></translation></message>
    <message id="PROGRAMS_ESTIMATED"><translation>Estimates: what programs share counts for each of them.</translation></message>
    <message id="PROGRAMS_EXACT"><translation>Exact shares.</translation></message>
    <message id="PROGRAMS_EXACT_BUT" numerus="yes"><translation><numerusform>Exact shares, but for %n process that you may not read.</numerusform><numerusform>Exact shares, but for %n processes that you may not read.</numerusform></translation></message>
    <message id="PROGRAMS_MOST"><translation>Programs that hold most</translation></message>
    <message id="PROGRAMS_NOT_EXACT" numerus="yes"><translation><numerusform>Estimated: you may not read the exact share of %n process.</numerusform><numerusform>Estimated: you may not read the exact shares of %n processes.</numerusform></translation></message>
    <message id="Pictures"><translation>Pictures</translation></message>
    <message id="Please select some path to scan."><translation>Please select some path to scan.</translation></message>
    <message id="Preferences"><translation>Preferences</translation></message>
    <message id="QUICK_CLEAN"><translation>Clean</translation></message>
    <message id="QUICK_CLEAN_ASK"><translation>Everything in these folders will be removed.</translation></message>
    <message id="QUICK_CLEAN_FOLDER"><translation>%1: %2</translation></message>
    <message id="QUICK_CLEAN_FOLDERS" numerus="yes"><translation><numerusform>%1: %2 and %n more folder</numerusform><numerusform>%1: %2 and %n more folders</numerusform></translation></message>
    <message id="Quick Clean"><translation>Quick Clean</translation></message>
    <message id="Quick Clean…"><translation>Quick Clean…</translation></message>
    <message id="Quit"><translation>Quit</translation></message>
    <message id="Quit Brightsweep"><translation>Quit Brightsweep</translation></message>
    <message id="READING_SHARES"><translation>Reading…</translation></message>
    <message id="REMOVAL_NO_LOCK"><translation>Whether something else is being removed cannot be told, so that nothing is removed now.</translation></message>
    <message id="REMOVAL_RUNS"><translation>Something is being removed already (%1, process %2). Wait until that has ended.</translation></message>
    <message id="RESTART"><translation>Restart</translation></message>
    <message id="RESULTS"><translation>Results</translation></message>
    <message id="REVEAL"><translation>Show in the file manager</translation></message>
    <message id="RIGHTS_DENIED"><translation>Administrator rights were denied: the password was wrong, or this account may not have them. What takes them stays.</translation></message>
    <message id="RIGHTS_DISMISSED"><translation>The question for the password was closed. Administrator rights were not given, and what takes them stays.</translation></message>
    <message id="RIGHTS_FAILED"><translation>Asking for administrator rights failed; the log says more. What takes them stays.</translation></message>
    <message id="RIGHTS_NO_BUS"><translation>The service that gives administrator rights (polkit) cannot be reached. What takes them stays.</translation></message>
    <message id="ROW_WARNS"><translation>Low</translation></message>
    <message id="RUNS_WITHOUT_ITEM"><translation>Brightsweep is running</translation></message>
    <message id="RUNS_WITHOUT_ITEM_HOW"><translation>This desktop shows no status items. Start Brightsweep again, or choose Open, to see its window.</translation></message>
    <message id="Removal"><translation>Removal</translation></message>
    <message id="SCAN_STOPPED"><translation>The scan was stopped</translation></message>
    <message id="SETTINGS_NOT_KEPT"><translation>Changes are not stored while the settings file %1 cannot be used (%2).</translation></message>
    <message id="SETTINGS_UNREADABLE"><translation>The settings cannot be read, so nothing is chosen for cleaning (%1: %2). Repair or remove that file.</translation></message>
    <message id="SHOW_ALL"><translation>Show all</translation></message>
    <message id="SHOW_OVERVIEW"><translation>Show all categories</translation></message>
    <message id="SHOW_VOLUMES"><translation>Show Volumes</translation></message>
    <message id="SOME_STAYED"><translation>Some files have stayed.</translation></message>
    <message id="SOME_STAYED_WHY"><translation>The reason stands beside each of them.</translation></message>
    <message id="STAYED_IN_USE" numerus="yes"><translation><numerusform>%n item is in use</numerusform><numerusform>%n items are in use</numerusform></translation></message>
    <message id="STAYED_OTHER" numerus="yes"><translation><numerusform>%n item could not be removed</numerusform><numerusform>%n items could not be removed</numerusform></translation></message>
    <message id="STAYED_READ_ONLY" numerus="yes"><translation><numerusform>%n item is on a read-only volume</numerusform><numerusform>%n items are on a read-only volume</numerusform></translation></message>
    <message id="STAYED_RIGHTS" numerus="yes"><translation><numerusform>%n item needs administrator rights</numerusform><numerusform>%n items need administrator rights</numerusform></translation></message>
    <message id="STAYS_BROKEN"><translation>stopped in the middle</translation></message>
    <message id="STAYS_BUSY"><translation>its package manager is at work</translation></message>
    <message id="STAYS_CHANGED"><translation>changed since the question</translation></message>
    <message id="STAYS_DISMISSED"><translation>not permitted</translation></message>
    <message id="STAYS_ESSENTIAL"><translation>the system cannot do without it</translation></message>
    <message id="STAYS_FAILED"><translation>could not be removed</translation></message>
    <message id="STAYS_GONE"><translation>no longer there</translation></message>
    <message id="STAYS_IMAGE"><translation>belongs to the image of the system</translation></message>
    <message id="STAYS_INTERRUPTED"><translation>its package manager was interrupted</translation></message>
    <message id="STAYS_LEFTOVERS"><translation>it went, and left behind: %1</translation></message>
    <message id="STAYS_NEEDED_BY_US"><translation>Brightsweep itself would go with it</translation></message>
    <message id="STAYS_NEEDS_RIGHTS"><translation>needs administrator rights</translation></message>
    <message id="STAYS_OWN"><translation>this is the program that you are using</translation></message>
    <message id="STAYS_TOO_MANY"><translation>too much depends on it</translation></message>
    <message id="STAYS_UNSUPPORTED"><translation>cannot be removed safely from here</translation></message>
    <message id="STOP"><translation>Stop</translation></message>
    <message id="SUPER_DRIVER"><translation>Optical Drives</translation></message>
    <message id="Scan"><translation>Scan</translation></message>
    <message id="Scanning system..."><translation>Scanning system...</translation></message>
    <message id="Selected"><translation>Selected</translation></message>
    <message id="Selected application(s) were uninstalled successfully."><translation>Selected application(s) were uninstalled successfully.</translation></message>
    <message id="Size"><translation>Size</translation></message>
    <message id="Some files that require admin access can't be removed!"><translation>Some files that require admin access can't be removed!</translation></message>
    <message id="Start"><translation>Start</translation></message>
    <message id="Stopping…"><translation>Stopping…</translation></message>
    <message id="System Applications"><translation>System Applications</translation></message>
    <message id="System Caches"><translation>System Caches</translation></message>
    <message id="System Logs"><translation>System Logs</translation></message>
    <message id="System application(s),Do you want to uninstall it?"><translation>System application(s). Do you want to uninstall it?</translation></message>
    <message id="THIS_COMPUTER"><translation>This computer</translation></message>
    <message id="TICK_ALL"><translation>Tick all</translation></message>
    <message id="TIP_KEEP_DOWNLOADS" numerus="yes"><translation><numerusform>Keeps the downloads and removes the other item, %n in all, %1.</numerusform><numerusform>Keeps the downloads and removes the other %n items, %1.</numerusform></translation></message>
    <message id="TIP_LOOK_FIRST"><translation>Shows the folder and removes nothing; the question stays.</translation></message>
    <message id="TIP_REMOVE_ALL" numerus="yes"><translation><numerusform>Removes the %n ticked item, %1.</numerusform><numerusform>Removes all %n ticked items, %1.</numerusform></translation></message>
    <message id="TIP_REMOVE_NOTHING"><translation>Removes nothing.</translation></message>
    <message id="TITLE_CLEAN_DOWNLOADS"><translation>User Downloads</translation></message>
    <message id="TITLE_CLEAN_SYS_CACHES"><translation>System Caches</translation></message>
    <message id="TITLE_CLEAN_SYS_LOGS"><translation>System Logs</translation></message>
    <message id="TITLE_CLEAN_SYS_MYMAC"><translation>My Computer</translation></message>
    <message id="TITLE_CLEAN_TRASH"><translation>User Trash</translation></message>
    <message id="TITLE_CLEAN_USR_CACHES"><translation>User Caches</translation></message>
    <message id="TITLE_CLEAN_USR_LOGS"><translation>User Logs</translation></message>
    <message id="TITLE_FREESPACE_MONITOR"><translation>Free Space Monitor</translation></message>
    <message id="TITLE_UNINSTALL"><translation>Uninstall Applications</translation></message>
    <message id="The package manager was interrupted. Run &quot;apt-get -f install&quot; as administrator first."><translation>The package manager was interrupted. Run "apt-get -f install" as administrator first.</translation></message>
    <message id="The package manager was interrupted. Run &quot;dpkg --configure -a&quot; as administrator first."><translation>The package manager was interrupted. Run "dpkg --configure -a" as administrator first.</translation></message>
    <message id="The scan was stopped. Brightsweep has to be restarted before it can scan again."><translation>The scan was stopped. Brightsweep has to be restarted before it can scan again.</translation></message>
    <message id="Total Size:"><translation>Total Size:</translation></message>
    <message id="TotalSize:"><translation>TotalSize:</translation></message>
    <message id="UNINSTALL_ALONG" numerus="yes"><translation><numerusform>%n other package that cannot do without it goes along: %1.</numerusform><numerusform>%n other packages that cannot do without it go along: %1.</numerusform></translation></message>
    <message id="UNINSTALL_ASKING_RIGHTS"><translation>Waiting for the administrator’s permission…</translation></message>
    <message id="UNINSTALL_BUT_LEFTOVERS"><translation>Uninstalled. Some of what was left behind could not be removed.</translation></message>
    <message id="UNINSTALL_COUNT" numerus="yes"><translation><numerusform>%n application</numerusform><numerusform>%n applications</numerusform></translation></message>
    <message id="UNINSTALL_DETAILS"><translation>Details</translation></message>
    <message id="UNINSTALL_EMPTY"><translation>No applications were found that could be uninstalled.</translation></message>
    <message id="UNINSTALL_ENTRIES"><translation>With it go: %1.</translation></message>
    <message id="UNINSTALL_FILTER"><translation>Search applications</translation></message>
    <message id="UNINSTALL_HIDDEN_TICKS" numerus="yes"><translation><numerusform>%n ticked application is not shown here. It will not be uninstalled.</numerusform><numerusform>%n ticked applications are not shown here. They will not be uninstalled.</numerusform></translation></message>
    <message id="UNINSTALL_KIND_NOT_LISTED"><translation>Could not be listed: %1</translation></message>
    <message id="UNINSTALL_LEAVES"><translation>It leaves this behind; what is ticked goes as well:</translation></message>
    <message id="UNINSTALL_LEAVES_NOTHING"><translation>Nothing is known that it would leave behind.</translation></message>
    <message id="UNINSTALL_LISTING"><translation>Looking for applications…</translation></message>
    <message id="UNINSTALL_MEASURING"><translation>Measuring…</translation></message>
    <message id="UNINSTALL_NEEDS_RIGHTS"><translation>It takes administrator rights; without them nothing of it goes.</translation></message>
    <message id="UNINSTALL_NOTHING_GOES"><translation>Nothing of this can be uninstalled.</translation></message>
    <message id="UNINSTALL_NOT_LISTED"><translation>The applications could not be listed.</translation></message>
    <message id="UNINSTALL_PLANNING"><translation>Finding out what goes with it…</translation></message>
    <message id="UNINSTALL_PURGE"><translation>Settings of the whole system: %1</translation></message>
    <message id="UNINSTALL_REMOVING"><translation>Removing %1…</translation></message>
    <message id="UNINSTALL_RUNNING"><translation>It is running (%1). Close it first: what it writes when it ends would stay.</translation></message>
    <message id="UNINSTALL_SNAP_COPY"><translation>The copy of its data, too, that would otherwise be kept for 31 days</translation></message>
    <message id="UNINSTALL_STAYS"><translation>It stays: %1.</translation></message>
    <message id="UNINSTALL_SUM"><translation>%1 go: %2.</translation></message>
    <message id="UNINSTALL_SUM_ALONG" numerus="yes"><translation><numerusform>%n package along with them</numerusform><numerusform>%n packages along with them</numerusform></translation></message>
    <message id="UNINSTALL_SUM_APPS" numerus="yes"><translation><numerusform>%n application</numerusform><numerusform>%n applications</numerusform></translation></message>
    <message id="UNINSTALL_SUM_LEFT" numerus="yes"><translation><numerusform>%n leftover</numerusform><numerusform>%n leftovers</numerusform></translation></message>
    <message id="UNINSTALL_SUM_STAYS" numerus="yes"><translation><numerusform>%n leftover that is not ticked stays (%1).</numerusform><numerusform>%n leftovers that are not ticked stay (%1).</numerusform></translation></message>
    <message id="UNINSTALL_WORKING"><translation>Uninstalling…</translation></message>
    <message id="UNIT_BYTES"><translation>bytes</translation></message>
    <message id="UNIT_TB_TIP"><translation>No file reaches a limit in TB.</translation></message>
    <message id="USAGE_AGE_HALF_YEAR"><translation>within half a year</translation></message>
    <message id="USAGE_AGE_MONTH"><translation>within a month</translation></message>
    <message id="USAGE_AGE_OLDER"><translation>older</translation></message>
    <message id="USAGE_AGE_TWO_YEARS"><translation>within two years</translation></message>
    <message id="USAGE_AGE_YEAR"><translation>within a year</translation></message>
    <message id="USAGE_ASK" numerus="yes"><translation><numerusform>Remove %n item?</numerusform><numerusform>Remove %n items?</numerusform></translation></message>
    <message id="USAGE_ASK_ONCE_MORE" numerus="yes"><translation><numerusform>Remove this one, too?</numerusform><numerusform>Remove these %n, too?</numerusform></translation></message>
    <message id="USAGE_BY_AGE"><translation>Colours by last change</translation></message>
    <message id="USAGE_BY_KIND"><translation>Colours by kind of files</translation></message>
    <message id="USAGE_BY_PLACE"><translation>Colours by place</translation></message>
    <message id="USAGE_BY_SIZE"><translation>Sizes of the files</translation></message>
    <message id="USAGE_BY_STORED"><translation>Space taken on disk</translation></message>
    <message id="USAGE_CANNOT_TICK"><translation>%1 cannot be selected: %2.</translation></message>
    <message id="USAGE_CHART"><translation>Ring chart</translation></message>
    <message id="USAGE_CHART_MODE"><translation>Ring chart</translation></message>
    <message id="USAGE_COPY_PATH"><translation>Copy Path</translation></message>
    <message id="USAGE_DROP"><translation>Drop a folder here, or choose a volume, to see what takes its space.</translation></message>
    <message id="USAGE_EMPTY"><translation>There is nothing in this folder.</translation></message>
    <message id="USAGE_FREES"><translation>This frees %1.</translation></message>
    <message id="USAGE_FREE_OF"><translation>%1 free of %2</translation></message>
    <message id="USAGE_FURTHER_FOLDERS"><translation>Further folders on the way</translation></message>
    <message id="USAGE_FURTHER_ITEMS" numerus="yes"><translation><numerusform>%n further item</numerusform><numerusform>%n further items</numerusform></translation></message>
    <message id="USAGE_GAP"><translation>Files and small folders of %1</translation></message>
    <message id="USAGE_GONE"><translation>%1 is no longer there.</translation></message>
    <message id="USAGE_LEAVE_OUT"><translation>Leave Out</translation></message>
    <message id="USAGE_LEFT_OUT" numerus="yes"><translation><numerusform>%n folder is left out.</numerusform><numerusform>%n folders are left out.</numerusform></translation></message>
    <message id="USAGE_LIST"><translation>Folders and large files</translation></message>
    <message id="USAGE_LIST_MODE"><translation>List</translation></message>
    <message id="USAGE_MORE_THAN_VOLUME"><translation>This is more than the volume can hold: a file with several names counts once for each, and files with holes count in full.</translation></message>
    <message id="USAGE_NOTE_GAINED" numerus="yes"><translation><numerusform>%n entry came to it since it was selected</numerusform><numerusform>%n entries came to it since it was selected</numerusform></translation></message>
    <message id="USAGE_NOTE_GONE"><translation>is gone already</translation></message>
    <message id="USAGE_NOTE_IN_USE"><translation>in use by %1</translation></message>
    <message id="USAGE_NOTE_SMALL" numerus="yes"><translation><numerusform>with %n small entry, %1</numerusform><numerusform>with %n small entries, %1</numerusform></translation></message>
    <message id="USAGE_OF_VOLUME"><translation>%1% of volume</translation></message>
    <message id="USAGE_OPEN"><translation>Open</translation></message>
    <message id="USAGE_PATH"><translation>Path</translation></message>
    <message id="USAGE_PNG"><translation>PNG picture (*.png)</translation></message>
    <message id="USAGE_PROGRESS"><translation>Progress of the scan</translation></message>
    <message id="USAGE_READING_AGAIN"><translation>A folder is being read again…</translation></message>
    <message id="USAGE_READ_AGAIN"><translation>Read Again</translation></message>
    <message id="USAGE_RECENT"><translation>Scanned last</translation></message>
    <message id="USAGE_REMOVE"><translation>Remove</translation></message>
    <message id="USAGE_REMOVED" numerus="yes"><translation><numerusform>%n item removed, %1 freed.</numerusform><numerusform>%n items removed, %1 freed.</numerusform></translation></message>
    <message id="USAGE_REMOVING"><translation>Removing: %1 of %2</translation></message>
    <message id="USAGE_REST" numerus="yes"><translation><numerusform>%n file below the limit is not listed: %1</numerusform><numerusform>%n files below the limit are not listed: %1</numerusform></translation></message>
    <message id="USAGE_REVEAL"><translation>Show in File Manager</translation></message>
    <message id="USAGE_SAVE_PICTURE"><translation>Save Picture…</translation></message>
    <message id="USAGE_SCANNING"><translation>Scanning %1</translation></message>
    <message id="USAGE_SCAN_ONLY"><translation>Scan Only This</translation></message>
    <message id="USAGE_SHOW_UNREAD"><translation>Show Folders…</translation></message>
    <message id="USAGE_STAYED" numerus="yes"><translation><numerusform>%n item stayed: %1.</numerusform><numerusform>%n items stayed: %1.</numerusform></translation></message>
    <message id="USAGE_STOPPED"><translation>The last scan was stopped.</translation></message>
    <message id="USAGE_SVG"><translation>SVG picture (*.svg)</translation></message>
    <message id="USAGE_TICK"><translation>Select</translation></message>
    <message id="USAGE_TIP_REMOVE"><translation>Removes what is ticked for good.</translation></message>
    <message id="USAGE_TIP_TRASH"><translation>Moves what is ticked to the trash, which frees nothing until it is emptied.</translation></message>
    <message id="USAGE_TRASHED" numerus="yes"><translation><numerusform>%n item moved to the trash.</numerusform><numerusform>%n items moved to the trash.</numerusform></translation></message>
    <message id="USAGE_UNREAD" numerus="yes"><translation><numerusform>%n folder could not be read: %1. With administrator rights: %2</numerusform><numerusform>%n folders could not be read, the first one is %1. With administrator rights: %2</numerusform></translation></message>
    <message id="USAGE_UNREAD_MORE" numerus="yes"><translation><numerusform>… and %n more</numerusform><numerusform>… and %n more</numerusform></translation></message>
    <message id="USAGE_UNREAD_TITLE" numerus="yes"><translation><numerusform>%n folder could not be read</numerusform><numerusform>%n folders could not be read</numerusform></translation></message>
    <message id="USAGE_UNTICK"><translation>Deselect</translation></message>
    <message id="USAGE_VIEW"><translation>View</translation></message>
    <message id="USAGE_VIEW_TIP"><translation>What the colours and the sizes of the chart tell</translation></message>
    <message id="USAGE_WAITS"><translation>The last scan still waits for %1, which does not answer.</translation></message>
    <message id="Uninstall"><translation>Uninstall</translation></message>
    <message id="Uninstall Applications"><translation>Uninstall Applications</translation></message>
    <message id="Uninstall the selected application(s)?"><translation>Uninstall the selected application(s)?</translation></message>
    <message id="User Caches"><translation>User Caches</translation></message>
    <message id="User Downloads"><translation>User Downloads</translation></message>
    <message id="User Logs"><translation>User Logs</translation></message>
    <message id="User Trash"><translation>User Trash</translation></message>
    <message id="VOLUMES_AND_MEMORY"><translation>Volumes and memory</translation></message>
    <message id="VOLUME_FREE_OF"><translation>%1, %2 free of %3</translation></message>
    <message id="VOLUME_UNMOUNTED"><translation>%1 is unmounted.</translation></message>
    <message id="Videos"><translation>Videos</translation></message>
    <message id="Weekly"><translation>Weekly</translation></message>
    <message id="Work on %1 was interrupted. Install it again as administrator first, with &quot;apt-get install --reinstall&quot; and its name."><translation>Work on %1 was interrupted. Install it again as administrator first, with "apt-get install --reinstall" and its name.</translation></message>
    <message id="Work on %1 was interrupted. Run &quot;apt-get -f install&quot; as administrator first."><translation>Work on %1 was interrupted. Run "apt-get -f install" as administrator first.</translation></message>
    <message id="Work on %1 was interrupted. Run &quot;dpkg --configure -a&quot; as administrator first."><translation>Work on %1 was interrupted. Run "dpkg --configure -a" as administrator first.</translation></message>
    <message id="YES"><translation>Yes</translation></message>
    <message id="You disk"><translation>Your disk</translation></message>
    <message id="You do not have privileges to clean these files. Please open the padlock at the bottom to have admin access."><translation>You do not have privileges to clean these files. Please open the padlock at the bottom to have admin access.</translation></message>
    <message id="a program is writing to it"><translation>a program is writing to it</translation></message>
    <message id="a program is writing to the copy that stays"><translation>a program is writing to the copy that stays</translation></message>
    <message id="a protected place"><translation>a protected place</translation></message>
    <message id="asks for the administrator's password"><translation>asks for the administrator’s password</translation></message>
    <message id="cannot be removed"><translation>cannot be removed</translation></message>
    <message id="changed since it was found"><translation>changed since it was found</translation></message>
    <message id="clean memory"><translation>Clean Memory</translation></message>
    <message id="has a name that a login item cannot hold"><translation>has a name that a login item cannot hold</translation></message>
    <message id="has an entry of your own in its place"><translation>has an entry of your own in its place</translation></message>
    <message id="has no trash on its volume"><translation>has no trash on its volume</translation></message>
    <message id="has the name of &quot;%1&quot;, which was removed"><translation>has the name of “%1”, which was removed</translation></message>
    <message id="holds another volume"><translation>holds another volume</translation></message>
    <message id="holds no login item"><translation>holds no login item</translation></message>
    <message id="installs and removes programs"><translation>installs and removes programs</translation></message>
    <message id="is a link to something that is not your own file in your home"><translation>is a link to something that is not your own file in your home</translation></message>
    <message id="is in use as a program or as swap space"><translation>is in use as a program or as swap space</translation></message>
    <message id="is kept out of copy-on-write, and so out of sharing"><translation>is kept out of copy-on-write, and so out of sharing</translation></message>
    <message id="is no file that a login item could be in"><translation>is no file that a login item could be in</translation></message>
    <message id="is no program, document or folder"><translation>is no program, document or folder</translation></message>
    <message id="is part of the desktop that is running"><translation>is part of the desktop that is running</translation></message>
    <message id="is the kernel that is running"><translation>is the kernel that is running</translation></message>
    <message id="its file system cannot share blocks"><translation>its file system cannot share blocks</translation></message>
    <message id="its file system refuses to share its blocks"><translation>its file system refuses to share its blocks</translation></message>
    <message id="its volume can only be read"><translation>its volume can only be read</translation></message>
    <message id="lies behind a link"><translation>lies behind a link</translation></message>
    <message id="lies in the trash already"><translation>lies in the trash already</translation></message>
    <message id="lies on another file system than the copy that stays"><translation>lies on another file system than the copy that stays</translation></message>
    <message id="lies on another volume"><translation>lies on another volume</translation></message>
    <message id="lies outside of this system's folders"><translation>lies outside of this system's folders</translation></message>
    <message id="names no program to start"><translation>names no program to start</translation></message>
    <message id="no other copy of it is left"><translation>no other copy of it is left</translation></message>
    <message id="part of every standard installation"><translation>part of every standard installation</translation></message>
    <message id="part of the collection %1"><translation>part of the collection %1</translation></message>
    <message id="part of the system"><translation>part of the system</translation></message>
    <message id="starts &quot;%1&quot;, which is not there"><translation>starts “%1”, which is not there</translation></message>
    <message id="starts a Flatpak that is not installed"><translation>starts a Flatpak that is not installed</translation></message>
    <message id="starts the system"><translation>starts the system</translation></message>
    <message id="the Flatpak is not installed"><translation>the Flatpak is not installed</translation></message>
    <message id="the copy that stays cannot be read"><translation>the copy that stays cannot be read</translation></message>
    <message id="the copy that stays has changed since it was found"><translation>the copy that stays has changed since it was found</translation></message>
    <message id="the copy that stays has other contents"><translation>the copy that stays has other contents</translation></message>
    <message id="the copy that stays is this very file"><translation>the copy that stays is this very file</translation></message>
    <message id="the mount table cannot be read"><translation>the mount table cannot be read</translation></message>
    <message id="the snap is not installed"><translation>the snap is not installed</translation></message>
    <message id="the system cannot do without it"><translation>the system cannot do without it</translation></message>
    <message id="what an application wrote that was removed"><translation>what an application wrote that was removed</translation></message>
    <message id="without it the system's own entry would start; hide it instead"><translation>without it the system's own entry would start; hide it instead</translation></message>
    <message id="不是数字"><translation>This is not a number.</translation></message>
</context>
</TS>
