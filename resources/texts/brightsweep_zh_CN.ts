<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name></name>
    <message id="ABOUT_TEXT"><translation>找出占满磁盘的内容，在移除之前显示给您，并留意每个卷的可用空间。</translation></message>
    <message id="ABOUT_TITLE"><translation>关于 Brightsweep</translation></message>
    <message id="ABOUT_VERSION"><translation>版本 %1</translation></message>
    <message id="CANCEL"><translation>取消</translation></message>
    <message id="CANNOT_OPEN_FINDER"><translation>无法在文件管理器中打开此卷。</translation></message>
    <message id="CLEAN_FILES_COUNT"><translation>已清理的项目：</translation></message>
    <message id="CLEAN_FILES_SIZE"><translation>已释放的空间：</translation></message>
    <message id="CLEAN_OUTDATED"><translation>自此次扫描以来，快速清理已移除了一些项目。</translation></message>
    <message id="CLOSE"><translation>关闭</translation></message>
    <message id="DESC_CLEAN_DOWNLOADS"><translation>下载文件夹中的所有内容。请先查看：这些是您自己的文件。</translation></message>
    <message id="DESC_CLEAN_SYS_CACHES"><translation>系统为避免再次下载或计算而保留的软件包和数据。需要时系统会重新获取或生成。</translation></message>
    <message id="DESC_CLEAN_SYS_LOGS"><translation>安装、升级和崩溃的记录，仅用于调查过去的问题。</translation></message>
    <message id="DESC_CLEAN_TRASH"><translation>您在所有卷上丢弃的文件。清理后无法还原。</translation></message>
    <message id="DESC_CLEAN_USR_CACHES"><translation>程序为加快速度而保留的内容。程序会重新生成它们；之后的首次启动可能稍慢。</translation></message>
    <message id="DESC_CLEAN_USR_LOGS"><translation>程序对自身运行的记录，仅用于调查过去的问题。</translation></message>
    <message id="DESC_FREESPACE_MONITOR"><translation>监视每个卷的可用空间，并在快满时发出警告。</translation></message>
    <message id="DESC_UNINSTALL"><translation>移除应用程序及其留下的设置、缓存和日志。</translation></message>
    <message id="DISK_IMAGE"><translation>磁盘映像</translation></message>
    <message id="DRIVE_STAYS"><translation>但未能释放其驱动器。</translation></message>
    <message id="EMPTY_DISK_USAGE"><translation>用圆环图显示哪些文件夹占用了卷的空间，直至每个文件。</translation></message>
    <message id="EMPTY_DUPLICATES"><translation>查找内容相同的文件，无论名称和位置。</translation></message>
    <message id="EMPTY_LOGIN_ITEMS"><translation>列出随会话启动的项目，并可添加或移除。</translation></message>
    <message id="EMPTY_MEMORY"><translation>将程序不再使用的内存归还给需要它的程序。</translation></message>
    <message id="EMPTY_PREFERENCES"><translation>设置清理的内容、Brightsweep 何时发出警告以及如何启动。</translation></message>
    <message id="EMPTY_SCAN"><translation>查找缓存、日志、回收站和旧的下载内容，并在移除任何内容之前显示每一项。</translation></message>
    <message id="EMPTY_UNINSTALL"><translation>移除程序及其留下的设置、缓存和日志。</translation></message>
    <message id="EXTERNAL_STORAGE"><translation>外部存储</translation></message>
    <message id="FREE_MEMORY"><translation>内存</translation></message>
    <message id="FREE_MEMORY_NOW"><translation>释放内存</translation></message>
    <message id="LEFT_OUT_FOREIGN"><translation>不会清理 %1，因为它属于其他用户。</translation></message>
    <message id="LEFT_OUT_KEPT"><translation>不会清理 %1，因为其中不只有该类别的内容。</translation></message>
    <message id="LEFT_OUT_TOP"><translation>不会清理 %1，因为它是一个卷的根目录。</translation></message>
    <message id="LOCAL_STORAGE"><translation>本地存储</translation></message>
    <message id="NETWOR_STORAGE"><translation>网络存储</translation></message>
    <message id="NOTHING_RELEASED"><translation>未能释放内存。</translation></message>
    <message id="NO_FOLDER_CONTENT"><translation>没有选择要清理的文件夹。请在“偏好设置”中选择。</translation></message>
    <message id="NO_HAVE_REMOVABLE"><translation>没有可弹出的卷。</translation></message>
    <message id="OK"><translation>确定</translation></message>
    <message id="OPEN_APPLICATIONS"><translation>打开应用程序</translation></message>
    <message id="OPEN_AUTOSTART"><translation>打开自启动文件夹</translation></message>
    <message id="OPEN_HOME"><translation>打开主文件夹</translation></message>
    <message id="QUICK_CLEAN"><translation>清理</translation></message>
    <message id="QUICK_CLEAN_ASK"><translation>这些文件夹中的所有内容都将被移除。</translation></message>
    <message id="REMOVAL_NO_LOCK"><translation>无法判断是否有其他移除操作正在进行，因此现在不会移除任何内容。</translation></message>
    <message id="REMOVAL_RUNS"><translation>已有移除操作正在进行（%1，进程 %2）。请等待其结束。</translation></message>
    <message id="ROW_WARNS"><translation>不足</translation></message>
    <message id="SHOW_LOG"><translation>显示日志</translation></message>
    <message id="SHOW_VOLUMES"><translation>显示卷</translation></message>
    <message id="STAYED_IN_USE" numerus="yes"><translation><numerusform>%n 个项目正在使用</numerusform></translation></message>
    <message id="STAYED_OTHER" numerus="yes"><translation><numerusform>%n 个项目无法移除</numerusform></translation></message>
    <message id="STAYED_READ_ONLY" numerus="yes"><translation><numerusform>%n 个项目位于只读卷上</numerusform></translation></message>
    <message id="STAYED_RIGHTS" numerus="yes"><translation><numerusform>%n 个项目需要管理员权限</numerusform></translation></message>
    <message id="SUPER_DRIVER"><translation>光驱</translation></message>
    <message id="TITLE_CLEAN_DOWNLOADS"><translation>用户下载</translation></message>
    <message id="TITLE_CLEAN_SYS_CACHES"><translation>系统缓存</translation></message>
    <message id="TITLE_CLEAN_SYS_LOGS"><translation>系统日志</translation></message>
    <message id="TITLE_CLEAN_SYS_MYMAC"><translation>我的电脑</translation></message>
    <message id="TITLE_CLEAN_TRASH"><translation>用户回收站</translation></message>
    <message id="TITLE_CLEAN_USR_CACHES"><translation>用户缓存</translation></message>
    <message id="TITLE_CLEAN_USR_LOGS"><translation>用户日志</translation></message>
    <message id="TITLE_FREESPACE_MONITOR"><translation>可用空间监视</translation></message>
    <message id="TITLE_UNINSTALL"><translation>卸载应用程序</translation></message>
    <message id="VOLUME_UNMOUNTED"><translation>%1 已卸载。</translation></message>
</context>
</TS>
