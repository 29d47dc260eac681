<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN">
<context>
    <name></name>
    <message id="%@ freed."><translation>已释放 %1。</translation></message>
    <message id="%@ is cleaned"><translation>已清理 %1</translation></message>
    <message id="%@ is mounted successfully!"><translation>%1 已成功挂载！</translation></message>
    <message id="%@ is unmounted successfully!"><translation>%1 已成功卸载！</translation></message>
    <message id="%@ space has been recovered since last clean %@. The capacity of startup disk is %@, and %@ is available."><translation>自上次清理（%2）以来已回收 %1 空间。启动磁盘的容量为 %3，可用 %4。</translation></message>
    <message id="%d items are selected."><translation>已选择 %1 个项目。</translation></message>
    <message id="%d of %d selected, %@ will free up."><translation>已选择 %1 项，共 %2 项，将释放 %3。</translation></message>
    <message id="%d of %d selected."><translation>已选择 %1 项，共 %2 项。</translation></message>
    <message id="%lu files in %@."><translation>“%2”中有 %1 个文件。</translation></message>
    <message id="ABOUT_CHART"><translation>环形图由 %1 绘制</translation></message>
    <message id="ABOUT_TEXT"><translation>找出占满磁盘的内容，在移除之前显示给您，并留意每个卷的可用空间。</translation></message>
    <message id="ABOUT_TITLE"><translation>关于 Brightsweep</translation></message>
    <message id="ABOUT_VERSION"><translation>版本 %1</translation></message>
    <message id="ALARM_QUIET"><translation>当前可用 %1%：不警告。</translation></message>
    <message id="ALARM_WARNS"><translation>当前可用 %1%：会警告。</translation></message>
    <message id="AVAILABLE_BEFORE_AFTER"><translation>程序可用：之前 %1，现在 %2。文件将重新从磁盘读取。</translation></message>
    <message id="AVAILABLE_UNCHANGED"><translation>程序可用：%1，与之前相同。文件将重新从磁盘读取。</translation></message>
    <message id="About"><translation>关于</translation></message>
    <message id="Add login item"><translation>添加登录项</translation></message>
    <message id="All"><translation>全部</translation></message>
    <message id="All Applications"><translation>所有应用程序</translation></message>
    <message id="Applications"><translation>应用程序</translation></message>
    <message id="Archives"><translation>压缩文件</translation></message>
    <message id="Are you sure you want to continue?"><translation>确定要继续吗？</translation></message>
    <message id="Are you sure you want to delete all the duplicate files?"><translation>确定要删除全部重复文件吗？</translation></message>
    <message id="BACK"><translation>返回</translation></message>
    <message id="BADGE_RUNNING"><translation>正在运行</translation></message>
    <message id="BADGE_SYSTEM"><translation>系统组件</translation></message>
    <message id="CANCEL"><translation>取消</translation></message>
    <message id="CANNOT_EJECT"><translation>无法弹出 %1。</translation></message>
    <message id="CANNOT_OPEN_FINDER"><translation>无法在文件管理器中打开此卷。</translation></message>
    <message id="CAPACITY"><translation>启动磁盘的容量为 %1，可用 %2。</translation></message>
    <message id="CATEGORIES"><translation>类别</translation></message>
    <message id="CATEGORY_EMPTY"><translation>这里没有内容</translation></message>
    <message id="CATEGORY_EMPTY_TEXT"><translation>此类别中没有可移除的内容。</translation></message>
    <message id="CHOOSE"><translation>选择</translation></message>
    <message id="CHOOSE_FOLDER"><translation>选择文件夹…</translation></message>
    <message id="CHOOSE_PATH"><translation>选择要搜索的路径</translation></message>
    <message id="CLEAN"><translation>清理</translation></message>
    <message id="CLEAN_FILES_COUNT"><translation>已清理的项目：</translation></message>
    <message id="CLEAN_FILES_SIZE"><translation>已释放的空间：</translation></message>
    <message id="CLEAN_OUTDATED"><translation>自此次扫描以来，快速清理已移除了一些项目。</translation></message>
    <message id="CLOSE"><translation>关闭</translation></message>
    <message id="COLUMN_ID"><translation>标识符</translation></message>
    <message id="COLUMN_INSTALLED"><translation>安装日期</translation></message>
    <message id="COPY_PATH"><translation>复制路径</translation></message>
    <message id="CPU Brand:"><translation>处理器型号：</translation></message>
    <message id="CPU Vendor:"><translation>处理器厂商：</translation></message>
    <message id="Choose"><translation>选择</translation></message>
    <message id="Choose a login item"><translation>选择登录项</translation></message>
    <message id="Clean"><translation>清理</translation></message>
    <message id="Cleaned:"><translation>已清理：</translation></message>
    <message id="Click lock to get a higer privileges."><translation>点按锁以获取更高权限。</translation></message>
    <message id="Created: %@"><translation>创建日期：%1</translation></message>
    <message id="DESC_CLEAN_DOWNLOADS"><translation>下载文件夹中的所有内容。请先查看：这些是您自己的文件。</translation></message>
    <message id="DESC_CLEAN_SYS_CACHES"><translation>系统为避免再次下载或计算而保留的软件包和数据。需要时系统会重新获取或生成。</translation></message>
    <message id="DESC_CLEAN_SYS_LOGS"><translation>安装、升级和崩溃的记录，仅用于调查过去的问题。</translation></message>
    <message id="DESC_CLEAN_TRASH"><translation>您在所有卷上丢弃的文件。清理后无法还原。</translation></message>
    <message id="DESC_CLEAN_USR_CACHES"><translation>程序为加快速度而保留的内容。程序会重新生成它们；之后的首次启动可能稍慢。</translation></message>
    <message id="DESC_CLEAN_USR_LOGS"><translation>程序对自身运行的记录，仅用于调查过去的问题。</translation></message>
    <message id="DESC_FREESPACE_MONITOR"><translation>监视每个卷的可用空间，并在快满时发出警告。</translation></message>
    <message id="DESC_UNINSTALL"><translation>移除应用程序及其留下的设置、缓存和日志。</translation></message>
    <message id="DISK_IMAGE"><translation>磁盘映像</translation></message>
    <message id="DOWNLOADS_TICKED" numerus="yes"><translation><numerusform>下载文件夹中已选中 %n 项，共 %1。</numerusform></translation></message>
    <message id="DRIVE_STAYS"><translation>但未能释放其驱动器。</translation></message>
    <message id="DUP_ASK" numerus="yes"><translation><numerusform>要移除 %n 个文件并释放 %1 吗？</numerusform></translation></message>
    <message id="DUP_BUSY"><translation>此处正在搜索或移除。请等结束后再指定文件夹。</translation></message>
    <message id="DUP_DETAILS"><translation>详细信息</translation></message>
    <message id="DUP_DROP"><translation>将文件夹拖到这里，查找其中内容相同的文件，无论它们叫什么名字。</translation></message>
    <message id="DUP_FILTER"><translation>按名称或文件夹筛选</translation></message>
    <message id="DUP_FREED"><translation>可释放</translation></message>
    <message id="DUP_FREED_SO_FAR"><translation>目前已释放</translation></message>
    <message id="DUP_FREES"><translation>这些文件共 %1。其中文件的其他名称、共享的数据块和空洞所占的部分不会释放。</translation></message>
    <message id="DUP_GROUP_NOTE" numerus="yes"><translation><numerusform>浪费 %1 · %n 个文件</numerusform></translation></message>
    <message id="DUP_GROUP_STAYED" numerus="yes"><translation><numerusform>%n 个文件被保留</numerusform></translation></message>
    <message id="DUP_HARD_LINK" numerus="yes"><translation><numerusform>同一文件的 %n 个名称之一</numerusform></translation></message>
    <message id="DUP_HIDDEN_TICKS" numerus="yes"><translation><numerusform>有 %n 个已选文件未在此显示。“移除”也会移除它们。</numerusform></translation></message>
    <message id="DUP_KEEP_FIRST"><translation>保留最先找到的</translation></message>
    <message id="DUP_KEEP_FOLDER"><translation>保留某个文件夹中的文件…</translation></message>
    <message id="DUP_KEEP_NEWEST"><translation>保留最新的</translation></message>
    <message id="DUP_KEEP_OLDEST"><translation>保留最旧的</translation></message>
    <message id="DUP_KEEP_SHORTEST"><translation>保留路径最短的</translation></message>
    <message id="DUP_KEEP_THIS"><translation>保留此文件</translation></message>
    <message id="DUP_KEPT_FOLDER"><translation>选择要保留其文件的文件夹</translation></message>
    <message id="DUP_LIMIT"><translation>大于 %1 的文件 · 更改…</translation></message>
    <message id="DUP_LINK"><translation>链接</translation></message>
    <message id="DUP_MORE_PLACES" numerus="yes"><translation><numerusform>以及另外 %n 个</numerusform></translation></message>
    <message id="DUP_NONE"><translation>未找到重复文件</translation></message>
    <message id="DUP_NONE_LEFT"><translation>已没有重复文件</translation></message>
    <message id="DUP_NOT_LOCAL"><translation>位于其他计算机上，不进行查看。</translation></message>
    <message id="DUP_NOT_SHOWN" numerus="yes"><translation><numerusform>其中 %n 个目前未显示。</numerusform></translation></message>
    <message id="DUP_NO_CLASS"><translation>未分类</translation></message>
    <message id="DUP_NO_FOLDER"><translation>没有这个文件夹</translation></message>
    <message id="DUP_NO_LIMIT"><translation>所有大小的文件 · 更改…</translation></message>
    <message id="DUP_ONE_FOLDER"><translation>%1 全部位于 %2。</translation></message>
    <message id="DUP_ONE_STAYS"><translation>每组至少保留一个文件。移除其他文件之前会再次逐字节比较。</translation></message>
    <message id="DUP_PLACES"><translation>所在位置</translation></message>
    <message id="DUP_RECENT"><translation>最近搜索</translation></message>
    <message id="DUP_REMOVAL_STOPPED"><translation>已停止。</translation></message>
    <message id="DUP_REMOVE"><translation>移除</translation></message>
    <message id="DUP_REMOVED" numerus="yes"><translation><numerusform>已移除 %n 个文件，释放 %1。</numerusform></translation></message>
    <message id="DUP_SEARCHING"><translation>正在搜索 %1</translation></message>
    <message id="DUP_SHARE"><translation>共享数据块</translation></message>
    <message id="DUP_SHARED" numerus="yes"><translation><numerusform>%n 个文件现已共享数据块，释放 %1。</numerusform></translation></message>
    <message id="DUP_SHARES"><translation>共享数据块</translation></message>
    <message id="DUP_SHARE_ASKING"><translation>正在询问文件系统是否支持…</translation></message>
    <message id="DUP_STAYED" numerus="yes"><translation><numerusform>有 %n 个文件被保留，原因见所在行。</numerusform></translation></message>
    <message id="DUP_STOPPED"><translation>搜索已停止。</translation></message>
    <message id="DUP_TICK"><translation>选择</translation></message>
    <message id="DUP_TICK_TIP"><translation>按规则选择，每组保留一个文件</translation></message>
    <message id="DUP_TIP_REMOVE"><translation>之后无法恢复。</translation></message>
    <message id="DUP_TIP_SHARE"><translation>所有文件都保留，并与保留的文件共用数据块。不会丢失任何内容，空间会被释放。</translation></message>
    <message id="DUP_TIP_TRASH"><translation>之后可以恢复；清空回收站前仍占用空间。</translation></message>
    <message id="DUP_TRASHED" numerus="yes"><translation><numerusform>已将 %n 个文件移到回收站。</numerusform></translation></message>
    <message id="DUP_UNDO"><translation>撤销上次选择</translation></message>
    <message id="DUP_UNREADABLE"><translation>无法打开。</translation></message>
    <message id="DUP_UNTICK"><translation>全部取消选择</translation></message>
    <message id="DUP_WASTED" numerus="yes"><translation><numerusform>被 %n 组重复文件浪费</numerusform></translation></message>
    <message id="DUP_WHOLE_GROUPS" numerus="yes"><translation><numerusform>有 %n 组的全部文件都将被移除，不会保留任何一个。</numerusform></translation></message>
    <message id="Daily"><translation>每天</translation></message>
    <message id="Deleting items..."><translation>正在删除项目…</translation></message>
    <message id="Disk Usage"><translation>磁盘使用情况</translation></message>
    <message id="Documents"><translation>文档</translation></message>
    <message id="Downloads folder is selected to clean. We recommend you to view this folder for anything useful before emptying it."><translation>已选择清理下载文件夹。建议您在清空之前先查看其中是否有有用的内容。</translation></message>
    <message id="Duplicates"><translation>重复文件</translation></message>
    <message id="EJECT"><translation>弹出 %1</translation></message>
    <message id="EMPTY_SCAN"><translation>查找缓存、日志、回收站和旧的下载内容，并在移除任何内容之前显示每一项。</translation></message>
    <message id="EXACT_SHARES"><translation>精确份额</translation></message>
    <message id="EXTERNAL_STORAGE"><translation>外部存储</translation></message>
    <message id="Eject All"><translation>全部弹出</translation></message>
    <message id="Ejecting…"><translation>正在弹出…</translation></message>
    <message id="FAILED_BUSY"><translation>使用中</translation></message>
    <message id="FAILED_CHANGED"><translation>已更改</translation></message>
    <message id="FAILED_OTHER"><translation>未移除</translation></message>
    <message id="FAILED_PROTECTED"><translation>受保护</translation></message>
    <message id="FAILED_READ_ONLY"><translation>只读</translation></message>
    <message id="FAILED_RIGHTS"><translation>需要管理员权限</translation></message>
    <message id="FAILED_STOPPED"><translation>已停止</translation></message>
    <message id="FAILED_VOLUME"><translation>含有卷</translation></message>
    <message id="FILTER"><translation>按名称筛选</translation></message>
    <message id="FILTER_NO_MATCH"><translation>没有名称符合筛选条件。</translation></message>
    <message id="FOLD_CLOSED"><translation>已折叠</translation></message>
    <message id="FOLD_OPEN"><translation>已展开</translation></message>
    <message id="FOUND_SO_FAR"><translation>目前已找到</translation></message>
    <message id="FREE_BEFORE_AFTER"><translation>可用空间：之前 %1，现在 %2。</translation></message>
    <message id="FREE_MEMORY"><translation>内存</translation></message>
    <message id="FREE_OF"><translation>%1 可用，共 %2</translation></message>
    <message id="Failed to uninstall the selected application(s). Please refer to Help for more info."><translation>无法卸载所选应用程序。更多信息请参阅帮助。</translation></message>
    <message id="Fast Clean"><translation>快速清理</translation></message>
    <message id="Free Memory"><translation>释放内存</translation></message>
    <message id="Free Space"><translation>可用空间</translation></message>
    <message id="Free Space Monitor"><translation>可用空间监视</translation></message>
    <message id="Free Space:"><translation>可用空间：</translation></message>
    <message id="FreeSize:"><translation>可用：</translation></message>
    <message id="Freeing..."><translation>正在释放…</translation></message>
    <message id="HIDDEN_TICKS" numerus="yes"><translation><numerusform>筛选隐藏了 %n 个已选项目。“清理”也会移除它们。</numerusform></translation></message>
    <message id="Help"><translation>帮助</translation></message>
    <message id="Hostname:"><translation>主机名：</translation></message>
    <message id="IN_USE_BY"><translation>正被 %1 使用</translation></message>
    <message id="ITEMS"><translation>项目</translation></message>
    <message id="KIND_APPIMAGE"><translation>AppImage</translation></message>
    <message id="KIND_BUNDLE"><translation>程序包</translation></message>
    <message id="KIND_FLATPAK"><translation>Flatpak</translation></message>
    <message id="KIND_FOLDER"><translation>独立文件夹</translation></message>
    <message id="KIND_PACKAGE"><translation>软件包</translation></message>
    <message id="KIND_SNAP"><translation>Snap</translation></message>
    <message id="LAUNCH_FAILED"><translation>无法更改 Brightsweep 是否在登录时启动：%1</translation></message>
    <message id="LEFT_BEHIND_ASK" numerus="yes"><translation><numerusform>要移除 %n 个项目（%1）吗？</numerusform></translation></message>
    <message id="LEFT_BEHIND_COUNT" numerus="yes"><translation><numerusform>%n 项残留</numerusform></translation></message>
    <message id="LEFT_BEHIND_NONE"><translation>未发现已移除的应用程序留下的内容。</translation></message>
    <message id="LEFT_BEHIND_REMOVED" numerus="yes"><translation><numerusform>已移除 %n 个项目，释放 %1。</numerusform></translation></message>
    <message id="LEFT_BEHIND_REMOVING"><translation>正在移除…</translation></message>
    <message id="LEFT_BEHIND_SEARCHING"><translation>正在查找残留内容…</translation></message>
    <message id="LEFT_BEHIND_STAYED" numerus="yes"><translation><numerusform>%n 个项目仍在。</numerusform></translation></message>
    <message id="LEFT_CACHE"><translation>缓存</translation></message>
    <message id="LEFT_CONFIG"><translation>设置</translation></message>
    <message id="LEFT_DATA"><translation>数据</translation></message>
    <message id="LEFT_ENTRY"><translation>菜单项</translation></message>
    <message id="LEFT_OUT_FOREIGN"><translation>不会清理 %1，因为它属于其他用户。</translation></message>
    <message id="LEFT_OUT_KEPT"><translation>不会清理 %1，因为其中不只有该类别的内容。</translation></message>
    <message id="LEFT_OUT_TOP"><translation>不会清理 %1，因为它是一个卷的根目录。</translation></message>
    <message id="LEFT_STATE"><translation>状态</translation></message>
    <message id="LEFT_SYSTEM"><translation>系统设置</translation></message>
    <message id="LOCAL_STORAGE"><translation>本地存储</translation></message>
    <message id="LOCK_NO_AGENT"><translation>这里没有程序能够请求管理员权限。请启动 polkit 代理，或以管理员身份启动 Brightsweep。</translation></message>
    <message id="LOGIN_ADD"><translation>添加…</translation></message>
    <message id="LOGIN_ADD_FOLDER"><translation>添加文件夹…</translation></message>
    <message id="LOGIN_BAD_LINE"><translation>可能不会启动，因为并非所有桌面环境都能理解此行：%1</translation></message>
    <message id="LOGIN_BYTE_ORDER_MARK"><translation>可能不会启动，因为其文件以字节顺序标记开头</translation></message>
    <message id="LOGIN_CANNOT_READ"><translation>无法读取您的登录项</translation></message>
    <message id="LOGIN_CANNOT_READ_HOW"><translation>无法读取设置文件夹中的“autostart”文件夹：%1</translation></message>
    <message id="LOGIN_DAMAGED_MARK"><translation>已损坏</translation></message>
    <message id="LOGIN_DELETE"><translation>移除登录项</translation></message>
    <message id="LOGIN_DROP"><translation>或将程序、文档和文件夹拖放到列表中</translation></message>
    <message id="LOGIN_ELSEWHERE_MARK"><translation>不适用</translation></message>
    <message id="LOGIN_ENTRY"><translation>条目</translation></message>
    <message id="LOGIN_FAILED"><translation>%1：%2</translation></message>
    <message id="LOGIN_HIDDEN"><translation>隐藏</translation></message>
    <message id="LOGIN_HIDDEN_HOW"><translation>隐藏的项目保留在列表中，但不会启动。</translation></message>
    <message id="LOGIN_HIDE"><translation>隐藏，使其不启动</translation></message>
    <message id="LOGIN_LINE_ENDS"><translation>可能不会启动，因为并非所有桌面都能识别其换行符</translation></message>
    <message id="LOGIN_MISSING"><translation>要启动的程序已不存在</translation></message>
    <message id="LOGIN_MISSING_MARK"><translation>缺失</translation></message>
    <message id="LOGIN_NAME_TOO_LONG"><translation>可能不会启动，因为其文件名过长</translation></message>
    <message id="LOGIN_NEEDS"><translation>不会启动，因为未安装此程序：%1</translation></message>
    <message id="LOGIN_NONE"><translation>没有您自己的项目随会话启动</translation></message>
    <message id="LOGIN_NONE_HOW"><translation>添加程序、文档或文件夹，或将其拖放到此处。</translation></message>
    <message id="LOGIN_NOT_EXECUTABLE"><translation>不会启动，因为这不是您可以运行的程序：%1</translation></message>
    <message id="LOGIN_NOT_IN"><translation>不在此桌面环境中启动：%1</translation></message>
    <message id="LOGIN_NOT_UTF8"><translation>可能不会启动，因为其文件包含非 UTF-8 文本</translation></message>
    <message id="LOGIN_NO_APPLICATION"><translation>不会启动，因为它不是应用程序</translation></message>
    <message id="LOGIN_NO_COMMAND"><translation>不会启动，因为没有指定程序</translation></message>
    <message id="LOGIN_ONLY_IN"><translation>仅在其他桌面环境中启动：%1</translation></message>
    <message id="LOGIN_OPEN"><translation>立即启动</translation></message>
    <message id="LOGIN_SENTENCE"><translation>这些项目随您的会话启动。隐藏的项目保留在列表中，但不会启动。</translation></message>
    <message id="LOGIN_SHOW"><translation>允许启动</translation></message>
    <message id="LOGIN_STARTS"><translation>随您的会话启动</translation></message>
    <message id="LOGIN_STAYS_MARK"><translation>不会启动</translation></message>
    <message id="LOGIN_SYSTEM"><translation>系统还会启动（%1）</translation></message>
    <message id="LOGIN_SYSTEM_NOTE"><translation>系统会为所有用户启动这些项目。开关仅对您生效，并且可以恢复。</translation></message>
    <message id="LOGIN_TWO_VALUES"><translation>可能会启动其他内容，因为其文件重复指定了：%1</translation></message>
    <message id="LOGIN_UNREADABLE"><translation>无法读取其文件</translation></message>
    <message id="LOGIN_UNREADABLE_MARK"><translation>无法读取</translation></message>
    <message id="LOGIN_WAITING"><translation>正在等待主文件夹响应…</translation></message>
    <message id="LOW_SPACE"><translation>磁盘空间不足</translation></message>
    <message id="LOW_SPACE_OF"><translation>%1：共 %3，可用 %2。</translation></message>
    <message id="Launch at login"><translation>登录时启动</translation></message>
    <message id="Left behind"><translation>残留内容</translation></message>
    <message id="Login Items"><translation>登录项</translation></message>
    <message id="MEMORY_ACTIVE"><translation>活跃</translation></message>
    <message id="MEMORY_AVAILABLE"><translation>程序可用</translation></message>
    <message id="MEMORY_CHART"><translation>内存图</translation></message>
    <message id="MEMORY_COMPRESSED"><translation>已压缩</translation></message>
    <message id="MEMORY_FILE_CACHE"><translation>文件缓存</translation></message>
    <message id="MEMORY_FREE"><translation>空闲</translation></message>
    <message id="MEMORY_INACTIVE"><translation>不活跃</translation></message>
    <message id="MEMORY_NO_SWAP"><translation>无</translation></message>
    <message id="MEMORY_PARTS"><translation>空闲：%1，不活跃：%2</translation></message>
    <message id="MEMORY_PRESSURE"><translation>内存压力</translation></message>
    <message id="MEMORY_RELEASE_NOTE"><translation>归还系统用来存放文件副本的内存。程序占用的内存保持不变，需要时文件会重新从磁盘读取：不会因此变快。</translation></message>
    <message id="MEMORY_SWAP"><translation>交换空间</translation></message>
    <message id="MEMORY_SWAP_OF"><translation>%1 / %2</translation></message>
    <message id="MEMORY_TOTAL"><translation>总计</translation></message>
    <message id="MEMORY_USED"><translation>已用</translation></message>
    <message id="MEMORY_WIRED"><translation>固定</translation></message>
    <message id="MENU"><translation>菜单</translation></message>
    <message id="MOVE_TO_TRASH"><translation>移到回收站</translation></message>
    <message id="Main Window"><translation>主窗口</translation></message>
    <message id="Memory"><translation>内存</translation></message>
    <message id="Memory:"><translation>内存：</translation></message>
    <message id="Model Identifier:"><translation>型号标识符：</translation></message>
    <message id="Modified"><translation>修改日期</translation></message>
    <message id="Monthly"><translation>每月</translation></message>
    <message id="Music"><translation>音乐</translation></message>
    <message id="My Mac"><translation>我的电脑</translation></message>
    <message id="NETWOR_STORAGE"><translation>网络存储</translation></message>
    <message id="NO"><translation>否</translation></message>
    <message id="NOTHING_RELEASED"><translation>未能释放内存。</translation></message>
    <message id="NOTHING_RELEASED_WHY"><translation>无法释放内存。系统可能只允许管理员这样做；日志中记录了释放工具遇到的情况。</translation></message>
    <message id="NOTHING_TO_CLEAN"><translation>没有可清理的内容</translation></message>
    <message id="NOTHING_TO_CLEAN_WHY"><translation>六个类别中都没有可以移除的内容。</translation></message>
    <message id="NOT_KNOWN"><translation>未知</translation></message>
    <message id="NO_FOLDER_CONTENT"><translation>没有选择要清理的文件夹。请在“偏好设置”中选择。</translation></message>
    <message id="NO_GUIDE"><translation>无法打开使用指南。</translation></message>
    <message id="NO_HAVE_REMOVABLE"><translation>没有可弹出的卷。</translation></message>
    <message id="Name"><translation>名称</translation></message>
    <message id="No items found in selected folder. Please try another one."><translation>在所选文件夹中未找到项目，请选择其他文件夹。</translation></message>
    <message id="OK"><translation>确定</translation></message>
    <message id="OPEN_DOWNLOADS"><translation>打开下载文件夹</translation></message>
    <message id="OS Release:"><translation>系统版本：</translation></message>
    <message id="OS Type:"><translation>系统类型：</translation></message>
    <message id="Open"><translation>打开</translation></message>
    <message id="Others"><translation>其他</translation></message>
    <message id="PADLOCK"><translation>锁</translation></message>
    <message id="PARTLY_TICKED"><translation>部分选中</translation></message>
    <message id="PERCENT"><translation>%1%</translation></message>
    <message id="PREF_ALARMS"><translation>警告</translation></message>
    <message id="PREF_ALWAYS_ASKS"><translation>清理下载内容之前总会询问。</translation></message>
    <message id="PREF_CATEGORIES_IN_USE"><translation>正在扫描或清理，结束后可以更改。</translation></message>
    <message id="PREF_CATEGORY_WORDS"><translation>扫描后默认勾选的内容，也是快速清理的内容。</translation></message>
    <message id="PREF_CHECK_INTERVAL"><translation>检查更新的频率</translation></message>
    <message id="PREF_CHECK_UPDATES"><translation>检查更新</translation></message>
    <message id="PREF_CLEANING"><translation>清理</translation></message>
    <message id="PREF_DESKTOP_LANGUAGE"><translation>与桌面相同</translation></message>
    <message id="PREF_DUPLICATE_LIMIT"><translation>重复文件：大于此大小的文件</translation></message>
    <message id="PREF_HIDDEN_FILES"><translation>重复文件：包括隐藏文件</translation></message>
    <message id="PREF_HIDE_ITEM"><translation>隐藏托盘图标</translation></message>
    <message id="PREF_LANGUAGE"><translation>语言</translation></message>
    <message id="PREF_LAUNCH"><translation>启动</translation></message>
    <message id="PREF_LOG"><translation>日志</translation></message>
    <message id="PREF_MAY_ASK"><translation>有项目无法清理时可以请求管理员权限</translation></message>
    <message id="PREF_MEMORY_ALARM"><translation>当程序可用的内存不多于此值时警告</translation></message>
    <message id="PREF_NO_UPDATES"><translation>此版本没有更新服务；如果来自软件包，则由软件包管理器负责更新。</translation></message>
    <message id="PREF_OPEN_LOG"><translation>打开日志</translation></message>
    <message id="PREF_PROGRAM"><translation>本程序</translation></message>
    <message id="PREF_RESTART_TIP"><translation>以新语言重新启动 Brightsweep。</translation></message>
    <message id="PREF_SEARCHES"><translation>搜索</translation></message>
    <message id="PREF_SPACE_ALARM"><translation>当卷的可用空间不多于此值时警告</translation></message>
    <message id="PREF_SYSTEM_FILES"><translation>重复文件：包括系统文件</translation></message>
    <message id="PREF_UNIT_OF"><translation>“%1”的单位</translation></message>
    <message id="PREF_UPDATES"><translation>更新</translation></message>
    <message id="PREF_USAGE_LIMIT"><translation>磁盘使用列表：从此大小起</translation></message>
    <message id="PRESSURE_HIGH"><translation>高</translation></message>
    <message id="PRESSURE_NONE"><translation>无</translation></message>
    <message id="PRESSURE_SOME"><translation>有一些</translation></message>
    <message id="PRESSURE_TIP"><translation>过去十秒中有 %1% 的时间程序在等待内存。</translation></message>
    <message id="PROCESS_COUNT" numerus="yes"><translation><numerusform>%n 个进程</numerusform></translation></message>
    <message id="PROGRAMS_ESTIMATED"><translation>估计值：程序共享的部分在每个程序中都计入。</translation></message>
    <message id="PROGRAMS_EXACT"><translation>精确份额。</translation></message>
    <message id="PROGRAMS_EXACT_BUT" numerus="yes"><translation><numerusform>精确份额，但有 %n 个进程您无权读取。</numerusform></translation></message>
    <message id="PROGRAMS_MOST"><translation>占用内存最多的程序</translation></message>
    <message id="PROGRAMS_NOT_EXACT" numerus="yes"><translation><numerusform>估算值：您无权读取 %n 个进程的精确份额。</numerusform></translation></message>
    <message id="Pictures"><translation>图片</translation></message>
    <message id="Please select some path to scan."><translation>请选择要扫描的路径。</translation></message>
    <message id="Preferences"><translation>偏好设置</translation></message>
    <message id="QUICK_CLEAN"><translation>清理</translation></message>
    <message id="QUICK_CLEAN_ASK"><translation>这些文件夹中的所有内容都将被移除。</translation></message>
    <message id="QUICK_CLEAN_FOLDER"><translation>%1：%2</translation></message>
    <message id="QUICK_CLEAN_FOLDERS" numerus="yes"><translation><numerusform>%1：%2 及另外 %n 个文件夹</numerusform></translation></message>
    <message id="Quick Clean"><translation>快速清理</translation></message>
    <message id="Quick Clean…"><translation>快速清理…</translation></message>
    <message id="Quit"><translation>退出</translation></message>
    <message id="Quit Brightsweep"><translation>退出 Brightsweep</translation></message>
    <message id="READING_SHARES"><translation>正在读取…</translation></message>
    <message id="REMOVAL_NO_LOCK"><translation>无法判断是否有其他移除操作正在进行，因此现在不会移除任何内容。</translation></message>
    <message id="REMOVAL_RUNS"><translation>已有移除操作正在进行（%1，进程 %2）。请等待其结束。</translation></message>
    <message id="RESTART"><translation>重新启动</translation></message>
    <message id="RESULTS"><translation>结果</translation></message>
    <message id="REVEAL"><translation>在文件管理器中显示</translation></message>
    <message id="RIGHTS_DENIED"><translation>管理员权限被拒绝：密码错误，或此帐户不得使用该权限。需要该权限的项目保留不动。</translation></message>
    <message id="RIGHTS_DISMISSED"><translation>密码询问已被关闭。未获得管理员权限，需要该权限的项目保留不动。</translation></message>
    <message id="RIGHTS_FAILED"><translation>请求管理员权限失败；详情见日志。需要该权限的项目保留不动。</translation></message>
    <message id="RIGHTS_NO_BUS"><translation>无法连接到授予管理员权限的服务 (polkit)。需要该权限的项目保留不动。</translation></message>
    <message id="ROW_WARNS"><translation>不足</translation></message>
    <message id="RUNS_WITHOUT_ITEM"><translation>Brightsweep 正在运行</translation></message>
    <message id="RUNS_WITHOUT_ITEM_HOW"><translation>此桌面不显示状态图标。请再次启动 Brightsweep 或选择“打开”以查看其窗口。</translation></message>
    <message id="Removal"><translation>移除</translation></message>
    <message id="SCAN_STOPPED"><translation>扫描已停止</translation></message>
    <message id="SETTINGS_NOT_KEPT"><translation>设置文件 %1 无法使用期间，更改不会保存（%2）。</translation></message>
    <message id="SETTINGS_UNREADABLE"><translation>无法读取设置，因此没有选择任何要清理的内容（%1：%2）。请修复或删除该文件。</translation></message>
    <message id="SHOW_ALL"><translation>全部显示</translation></message>
    <message id="SHOW_OVERVIEW"><translation>显示所有类别</translation></message>
    <message id="SHOW_VOLUMES"><translation>显示卷</translation></message>
    <message id="SOME_STAYED"><translation>有些文件被保留了。</translation></message>
    <message id="SOME_STAYED_WHY"><translation>原因显示在每个文件旁边。</translation></message>
    <message id="STAYED_IN_USE" numerus="yes"><translation><numerusform>%n 个项目正在使用</numerusform></translation></message>
    <message id="STAYED_OTHER" numerus="yes"><translation><numerusform>%n 个项目无法移除</numerusform></translation></message>
    <message id="STAYED_READ_ONLY" numerus="yes"><translation><numerusform>%n 个项目位于只读卷上</numerusform></translation></message>
    <message id="STAYED_RIGHTS" numerus="yes"><translation><numerusform>%n 个项目需要管理员权限</numerusform></translation></message>
    <message id="STAYS_BROKEN"><translation>中途停止</translation></message>
    <message id="STAYS_BUSY"><translation>软件包管理器正忙</translation></message>
    <message id="STAYS_CHANGED"><translation>询问之后已发生变化</translation></message>
    <message id="STAYS_DISMISSED"><translation>未获许可</translation></message>
    <message id="STAYS_ESSENTIAL"><translation>系统离不开它</translation></message>
    <message id="STAYS_FAILED"><translation>无法移除</translation></message>
    <message id="STAYS_GONE"><translation>已不存在</translation></message>
    <message id="STAYS_IMAGE"><translation>属于系统映像</translation></message>
    <message id="STAYS_INTERRUPTED"><translation>其软件包管理器曾被中断</translation></message>
    <message id="STAYS_LEFTOVERS"><translation>已移除，但留下了：%1</translation></message>
    <message id="STAYS_NEEDED_BY_US"><translation>Brightsweep 本身也会随之移除</translation></message>
    <message id="STAYS_NEEDS_RIGHTS"><translation>需要管理员权限</translation></message>
    <message id="STAYS_OWN"><translation>这是您正在使用的程序</translation></message>
    <message id="STAYS_TOO_MANY"><translation>依赖它的内容太多</translation></message>
    <message id="STAYS_UNSUPPORTED"><translation>无法从这里安全移除</translation></message>
    <message id="STOP"><translation>停止</translation></message>
    <message id="SUPER_DRIVER"><translation>光驱</translation></message>
    <message id="Scan"><translation>扫描</translation></message>
    <message id="Scanning system..."><translation>正在扫描系统…</translation></message>
    <message id="Selected"><translation>已选</translation></message>
    <message id="Selected application(s) were uninstalled successfully."><translation>所选应用程序已成功卸载。</translation></message>
    <message id="Size"><translation>大小</translation></message>
    <message id="Some files that require admin access can't be removed!"><translation>有些文件需要管理员权限，无法移除！</translation></message>
    <message id="Start"><translation>启动</translation></message>
    <message id="Stopping…"><translation>正在停止…</translation></message>
    <message id="System Applications"><translation>系统应用程序</translation></message>
    <message id="System Caches"><translation>系统缓存</translation></message>
    <message id="System Logs"><translation>系统日志</translation></message>
    <message id="System application(s),Do you want to uninstall it?"><translation>包含系统应用程序。要卸载吗？</translation></message>
    <message id="THIS_COMPUTER"><translation>此电脑</translation></message>
    <message id="TICK_ALL"><translation>全选</translation></message>
    <message id="TIP_KEEP_DOWNLOADS" numerus="yes"><translation><numerusform>保留下载内容，移除其余 %n 项，共 %1。</numerusform></translation></message>
    <message id="TIP_LOOK_FIRST"><translation>显示文件夹，不移除任何内容；提问保留。</translation></message>
    <message id="TIP_REMOVE_ALL" numerus="yes"><translation><numerusform>移除全部 %n 个选中的项目，共 %1。</numerusform></translation></message>
    <message id="TIP_REMOVE_NOTHING"><translation>不移除任何内容。</translation></message>
    <message id="TITLE_CLEAN_DOWNLOADS"><translation>用户下载</translation></message>
    <message id="TITLE_CLEAN_SYS_CACHES"><translation>系统缓存</translation></message>
    <message id="TITLE_CLEAN_SYS_LOGS"><translation>系统日志</translation></message>
    <message id="TITLE_CLEAN_SYS_MYMAC"><translation>我的电脑</translation></message>
    <message id="TITLE_CLEAN_TRASH"><translation>用户回收站</translation></message>
    <message id="TITLE_CLEAN_USR_CACHES"><translation>用户缓存</translation></message>
    <message id="TITLE_CLEAN_USR_LOGS"><translation>用户日志</translation></message>
    <message id="TITLE_FREESPACE_MONITOR"><translation>可用空间监视</translation></message>
    <message id="TITLE_UNINSTALL"><translation>卸载应用程序</translation></message>
    <message id="The package manager was interrupted. Run &quot;apt-get -f install&quot; as administrator first."><translation>软件包管理器曾被中断。请先以管理员身份运行“apt-get -f install”。</translation></message>
    <message id="The package manager was interrupted. Run &quot;dpkg --configure -a&quot; as administrator first."><translation>软件包管理器曾被中断。请先以管理员身份运行“dpkg --configure -a”。</translation></message>
    <message id="The scan was stopped. Brightsweep has to be restarted before it can scan again."><translation>扫描已停止。Brightsweep 需要重新启动才能再次扫描。</translation></message>
    <message id="Total Size:"><translation>总大小：</translation></message>
    <message id="TotalSize:"><translation>总大小：</translation></message>
    <message id="UNINSTALL_ALONG" numerus="yes"><translation><numerusform>%n 个依赖它的软件包会一并移除：%1。</numerusform></translation></message>
    <message id="UNINSTALL_ASKING_RIGHTS"><translation>正在等待管理员许可…</translation></message>
    <message id="UNINSTALL_BUT_LEFTOVERS"><translation>已卸载。部分残留项目无法移除。</translation></message>
    <message id="UNINSTALL_COUNT" numerus="yes"><translation><numerusform>%n 个应用程序</numerusform></translation></message>
    <message id="UNINSTALL_DETAILS"><translation>详细信息</translation></message>
    <message id="UNINSTALL_EMPTY"><translation>未找到可以卸载的应用程序。</translation></message>
    <message id="UNINSTALL_ENTRIES"><translation>随之消失：%1。</translation></message>
    <message id="UNINSTALL_FILTER"><translation>搜索应用程序</translation></message>
    <message id="UNINSTALL_HIDDEN_TICKS" numerus="yes"><translation><numerusform>有 %n 个已勾选的应用程序未在此显示，不会被卸载。</numerusform></translation></message>
    <message id="UNINSTALL_KIND_NOT_LISTED"><translation>无法列出：%1</translation></message>
    <message id="UNINSTALL_LEAVES"><translation>它会留下以下内容；勾选的也会移除：</translation></message>
    <message id="UNINSTALL_LEAVES_NOTHING"><translation>未发现它会留下的内容。</translation></message>
    <message id="UNINSTALL_LISTING"><translation>正在查找应用程序…</translation></message>
    <message id="UNINSTALL_MEASURING"><translation>正在计算大小…</translation></message>
    <message id="UNINSTALL_NEEDS_RIGHTS"><translation>这需要管理员权限；没有权限时不会移除其中任何内容。</translation></message>
    <message id="UNINSTALL_NOTHING_GOES"><translation>这些都无法卸载。</translation></message>
    <message id="UNINSTALL_NOT_LISTED"><translation>无法列出应用程序。</translation></message>
    <message id="UNINSTALL_PLANNING"><translation>正在确定会一并移除的内容…</translation></message>
    <message id="UNINSTALL_PURGE"><translation>整个系统的设置：%1</translation></message>
    <message id="UNINSTALL_REMOVING"><translation>正在移除 %1…</translation></message>
    <message id="UNINSTALL_RUNNING"><translation>它正在运行（%1）。请先关闭：它退出时写入的内容会保留下来。</translation></message>
    <message id="UNINSTALL_SNAP_COPY"><translation>同时移除其数据副本（否则会保留 31 天）</translation></message>
    <message id="UNINSTALL_STAYS"><translation>它会保留：%1。</translation></message>
    <message id="UNINSTALL_SUM"><translation>将移除 %1：%2。</translation></message>
    <message id="UNINSTALL_SUM_ALONG" numerus="yes"><translation><numerusform>%n 个附带软件包</numerusform></translation></message>
    <message id="UNINSTALL_SUM_APPS" numerus="yes"><translation><numerusform>%n 个应用程序</numerusform></translation></message>
    <message id="UNINSTALL_SUM_LEFT" numerus="yes"><translation><numerusform>%n 项残留</numerusform></translation></message>
    <message id="UNINSTALL_SUM_STAYS" numerus="yes"><translation><numerusform>%n 项未勾选的残留会保留（%1）。</numerusform></translation></message>
    <message id="UNINSTALL_WORKING"><translation>正在卸载…</translation></message>
    <message id="UNIT_BYTES"><translation>字节</translation></message>
    <message id="UNIT_TB_TIP"><translation>没有文件能达到以 TB 为单位的限制。</translation></message>
    <message id="USAGE_AGE_HALF_YEAR"><translation>半年内</translation></message>
    <message id="USAGE_AGE_MONTH"><translation>一个月内</translation></message>
    <message id="USAGE_AGE_OLDER"><translation>更早</translation></message>
    <message id="USAGE_AGE_TWO_YEARS"><translation>两年内</translation></message>
    <message id="USAGE_AGE_YEAR"><translation>一年内</translation></message>
    <message id="USAGE_ASK" numerus="yes"><translation><numerusform>要移除 %n 个项目吗？</numerusform></translation></message>
    <message id="USAGE_ASK_ONCE_MORE" numerus="yes"><translation><numerusform>也要移除这 %n 个项目吗？</numerusform></translation></message>
    <message id="USAGE_BY_AGE"><translation>按最后修改时间着色</translation></message>
    <message id="USAGE_BY_KIND"><translation>按文件类型着色</translation></message>
    <message id="USAGE_BY_PLACE"><translation>按位置着色</translation></message>
    <message id="USAGE_BY_SIZE"><translation>文件大小</translation></message>
    <message id="USAGE_BY_STORED"><translation>占用的磁盘空间</translation></message>
    <message id="USAGE_CANNOT_TICK"><translation>无法选择 %1：%2。</translation></message>
    <message id="USAGE_CHART"><translation>环形图</translation></message>
    <message id="USAGE_CHART_MODE"><translation>环形图</translation></message>
    <message id="USAGE_COPY_PATH"><translation>复制路径</translation></message>
    <message id="USAGE_DROP"><translation>将文件夹拖到这里，或选择一个卷，查看空间被什么占用。</translation></message>
    <message id="USAGE_EMPTY"><translation>此文件夹中没有内容。</translation></message>
    <message id="USAGE_FREES"><translation>这将释放 %1。</translation></message>
    <message id="USAGE_FREE_OF"><translation>%2 中有 %1 可用</translation></message>
    <message id="USAGE_FURTHER_FOLDERS"><translation>路径中的其他文件夹</translation></message>
    <message id="USAGE_FURTHER_ITEMS" numerus="yes"><translation><numerusform>另有 %n 个项目</numerusform></translation></message>
    <message id="USAGE_GAP"><translation>%1 中的文件和小文件夹</translation></message>
    <message id="USAGE_GONE"><translation>%1 已不存在。</translation></message>
    <message id="USAGE_LEAVE_OUT"><translation>不显示</translation></message>
    <message id="USAGE_LEFT_OUT" numerus="yes"><translation><numerusform>有 %n 个文件夹未显示。</numerusform></translation></message>
    <message id="USAGE_LIST"><translation>文件夹和大文件</translation></message>
    <message id="USAGE_LIST_MODE"><translation>列表</translation></message>
    <message id="USAGE_MORE_THAN_VOLUME"><translation>这超过了卷的容量：有多个名称的文件按每个名称各计一次，含空洞的文件按全部大小计算。</translation></message>
    <message id="USAGE_NOTE_GAINED" numerus="yes"><translation><numerusform>选择后新增了 %n 个条目</numerusform></translation></message>
    <message id="USAGE_NOTE_GONE"><translation>已不存在</translation></message>
    <message id="USAGE_NOTE_IN_USE"><translation>正被 %1 使用</translation></message>
    <message id="USAGE_NOTE_SMALL" numerus="yes"><translation><numerusform>含 %n 个小条目，%1</numerusform></translation></message>
    <message id="USAGE_OF_VOLUME"><translation>%1% 卷容量</translation></message>
    <message id="USAGE_OPEN"><translation>打开</translation></message>
    <message id="USAGE_PATH"><translation>路径</translation></message>
    <message id="USAGE_PNG"><translation>PNG 图片 (*.png)</translation></message>
    <message id="USAGE_PROGRESS"><translation>扫描进度</translation></message>
    <message id="USAGE_READING_AGAIN"><translation>正在重新读取文件夹…</translation></message>
    <message id="USAGE_READ_AGAIN"><translation>重新读取</translation></message>
    <message id="USAGE_RECENT"><translation>最近扫描</translation></message>
    <message id="USAGE_REMOVE"><translation>移除</translation></message>
    <message id="USAGE_REMOVED" numerus="yes"><translation><numerusform>已移除 %n 个项目，释放 %1。</numerusform></translation></message>
    <message id="USAGE_REMOVING"><translation>正在移除：%1 / %2</translation></message>
    <message id="USAGE_REST" numerus="yes"><translation><numerusform>未列出 %n 个小于限值的文件：%1</numerusform></translation></message>
    <message id="USAGE_REVEAL"><translation>在文件管理器中显示</translation></message>
    <message id="USAGE_SAVE_PICTURE"><translation>保存图片…</translation></message>
    <message id="USAGE_SCANNING"><translation>正在扫描 %1</translation></message>
    <message id="USAGE_SCAN_ONLY"><translation>仅扫描此文件夹</translation></message>
    <message id="USAGE_SHOW_UNREAD"><translation>显示文件夹…</translation></message>
    <message id="USAGE_STAYED" numerus="yes"><translation><numerusform>%n 个项目未移除：%1。</numerusform></translation></message>
    <message id="USAGE_STOPPED"><translation>上次扫描已停止。</translation></message>
    <message id="USAGE_SVG"><translation>SVG 图片 (*.svg)</translation></message>
    <message id="USAGE_TICK"><translation>选择</translation></message>
    <message id="USAGE_TIP_REMOVE"><translation>永久移除勾选的内容。</translation></message>
    <message id="USAGE_TIP_TRASH"><translation>将勾选的内容移到回收站；清空回收站后才会释放空间。</translation></message>
    <message id="USAGE_TRASHED" numerus="yes"><translation><numerusform>已将 %n 个项目移到回收站。</numerusform></translation></message>
    <message id="USAGE_UNREAD" numerus="yes"><translation><numerusform>%n 个文件夹无法读取，第一个是 %1。使用管理员权限：%2</numerusform></translation></message>
    <message id="USAGE_UNREAD_MORE" numerus="yes"><translation><numerusform>… 以及另外 %n 个</numerusform></translation></message>
    <message id="USAGE_UNREAD_TITLE" numerus="yes"><translation><numerusform>%n 个文件夹无法读取</numerusform></translation></message>
    <message id="USAGE_UNTICK"><translation>取消选择</translation></message>
    <message id="USAGE_VIEW"><translation>视图</translation></message>
    <message id="USAGE_VIEW_TIP"><translation>图表的颜色和大小表示什么</translation></message>
    <message id="USAGE_WAITS"><translation>上次扫描仍在等待 %1 的响应。</translation></message>
    <message id="Uninstall"><translation>卸载</translation></message>
    <message id="Uninstall Applications"><translation>卸载应用程序</translation></message>
    <message id="Uninstall the selected application(s)?"><translation>要卸载所选应用程序吗？</translation></message>
    <message id="User Caches"><translation>用户缓存</translation></message>
    <message id="User Downloads"><translation>用户下载</translation></message>
    <message id="User Logs"><translation>用户日志</translation></message>
    <message id="User Trash"><translation>用户回收站</translation></message>
    <message id="VOLUMES_AND_MEMORY"><translation>卷和内存</translation></message>
    <message id="VOLUME_FREE_OF"><translation>%1，共 %3，可用 %2</translation></message>
    <message id="VOLUME_UNMOUNTED"><translation>%1 已卸载。</translation></message>
    <message id="Videos"><translation>视频</translation></message>
    <message id="Weekly"><translation>每周</translation></message>
    <message id="Work on %1 was interrupted. Install it again as administrator first, with &quot;apt-get install --reinstall&quot; and its name."><translation>对 %1 的操作曾被中断。请先以管理员身份用“apt-get install --reinstall”加上其名称重新安装。</translation></message>
    <message id="Work on %1 was interrupted. Run &quot;apt-get -f install&quot; as administrator first."><translation>对 %1 的操作曾被中断。请先以管理员身份运行“apt-get -f install”。</translation></message>
    <message id="Work on %1 was interrupted. Run &quot;dpkg --configure -a&quot; as administrator first."><translation>对 %1 的操作曾被中断。请先以管理员身份运行“dpkg --configure -a”。</translation></message>
    <message id="YES"><translation>是</translation></message>
    <message id="You disk"><translation>您的磁盘</translation></message>
    <message id="You do not have privileges to clean these files. Please open the padlock at the bottom to have admin access."><translation>您没有清理这些文件的权限。请打开底部的锁以获取管理员权限。</translation></message>
    <message id="a program is writing to it"><translation>有程序正在写入</translation></message>
    <message id="a program is writing to the copy that stays"><translation>有程序正在写入要保留的副本</translation></message>
    <message id="a protected place"><translation>受保护的位置</translation></message>
    <message id="asks for the administrator's password"><translation>用于询问管理员密码</translation></message>
    <message id="cannot be removed"><translation>无法移除</translation></message>
    <message id="changed since it was found"><translation>找到后已被更改</translation></message>
    <message id="clean memory"><translation>清理内存</translation></message>
    <message id="has a name that a login item cannot hold"><translation>的名称无法写入登录项</translation></message>
    <message id="has an entry of your own in its place"><translation>已被您自己的项目取代</translation></message>
    <message id="has no trash on its volume"><translation>所在卷没有回收站</translation></message>
    <message id="has the name of &quot;%1&quot;, which was removed"><translation>与已移除的“%1”同名</translation></message>
    <message id="holds another volume"><translation>包含其他卷</translation></message>
    <message id="holds no login item"><translation>不包含登录项</translation></message>
    <message id="installs and removes programs"><translation>用于安装和移除程序</translation></message>
    <message id="is a link to something that is not your own file in your home"><translation>是一个链接，指向的不是主文件夹中属于您的文件</translation></message>
    <message id="is in use as a program or as swap space"><translation>正作为程序或交换空间使用</translation></message>
    <message id="is kept out of copy-on-write, and so out of sharing"><translation>已排除写时复制，因此不能共享</translation></message>
    <message id="is no file that a login item could be in"><translation>不是可以存放登录项的文件</translation></message>
    <message id="is no program, document or folder"><translation>不是程序、文档或文件夹</translation></message>
    <message id="is part of the desktop that is running"><translation>属于正在运行的桌面</translation></message>
    <message id="is the kernel that is running"><translation>是正在运行的内核</translation></message>
    <message id="its file system cannot share blocks"><translation>其文件系统不能共享数据块</translation></message>
    <message id="its file system refuses to share its blocks"><translation>其文件系统拒绝共享数据块</translation></message>
    <message id="its volume can only be read"><translation>其卷为只读</translation></message>
    <message id="lies behind a link"><translation>位于链接之后</translation></message>
    <message id="lies in the trash already"><translation>已在回收站中</translation></message>
    <message id="lies on another file system than the copy that stays"><translation>与要保留的副本不在同一文件系统</translation></message>
    <message id="lies on another volume"><translation>位于其他卷上</translation></message>
    <message id="lies outside of this system's folders"><translation>位于本系统的文件夹之外</translation></message>
    <message id="names no program to start"><translation>没有指定要启动的程序</translation></message>
    <message id="no other copy of it is left"><translation>没有剩下其他副本</translation></message>
    <message id="part of every standard installation"><translation>属于标准安装</translation></message>
    <message id="part of the collection %1"><translation>属于软件集 %1</translation></message>
    <message id="part of the system"><translation>系统的一部分</translation></message>
    <message id="starts &quot;%1&quot;, which is not there"><translation>启动不存在的“%1”</translation></message>
    <message id="starts a Flatpak that is not installed"><translation>启动未安装的 Flatpak</translation></message>
    <message id="starts the system"><translation>用于启动系统</translation></message>
    <message id="the Flatpak is not installed"><translation>该 Flatpak 未安装</translation></message>
    <message id="the copy that stays cannot be read"><translation>无法读取要保留的副本</translation></message>
    <message id="the copy that stays has changed since it was found"><translation>要保留的副本在搜索后已更改</translation></message>
    <message id="the copy that stays has other contents"><translation>要保留的副本内容不同</translation></message>
    <message id="the copy that stays is this very file"><translation>要保留的副本就是这个文件</translation></message>
    <message id="the mount table cannot be read"><translation>无法读取挂载表</translation></message>
    <message id="the snap is not installed"><translation>该 snap 未安装</translation></message>
    <message id="the system cannot do without it"><translation>系统离不开它</translation></message>
    <message id="what an application wrote that was removed"><translation>已移除的应用程序所写入的内容</translation></message>
    <message id="without it the system's own entry would start; hide it instead"><translation>没有它，系统自带的项目就会启动；请改为隐藏它</translation></message>
    <message id="不是数字"><translation>不是数字。</translation></message>
</context>
</TS>
