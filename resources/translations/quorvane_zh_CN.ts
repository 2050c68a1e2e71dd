<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>向下箭头</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>向左箭头</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>向右箭头</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>向上箭头</translation>
    </message>
    <message>
        <source>Cmd + %1</source>
        <translation>Cmd + %1</translation>
    </message>
    <message>
        <source>Ctrl + %1</source>
        <translation>Ctrl + %1</translation>
    </message>
    <message>
        <source>Shift + %1</source>
        <translation>Shift + %1</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>移动网络</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>无连接</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>程序文件不安全。</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>其他用户可以更改“%1”，它会以管理员权限运行。请重新安装本程序。</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>关于 Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Quorvane 图标</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>版本</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>用借来的 IP 地址隐藏您的 IP 地址。</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>我们的网站</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>复制诊断信息</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>复制版本、设置和日志末尾，不含名称、密码和地址</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>在浏览器中打开指南；在任何窗口中按 F1 也可打开</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - 管理员</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane 需要管理员权限</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>这些权限用于启动和停止 OpenVPN 以及设置 DNS 服务器。请输入此计算机管理员的用户名和密码。</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>名称(&amp;N)：</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>用户名</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>密码(&amp;P)：</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>密码</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>启动</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>必须且只能有一个命令。</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>意外的参数“%1”。</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json 须与 --status 或 --locations 一起使用。</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow 须与 --status 一起使用。</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>控制正在运行的 Quorvane。不带选项时将其启动。</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>用于 --hide：--locations 列出的名称。</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>隐藏 IP，并输出借用的 IP。</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>停止隐藏 IP。</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>更换为随机位置的 IP，并将其输出。</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>不再使用当前 IP；更换它，并输出新的 IP。</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>输出隐藏情况。</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>输出位置，每行一个。</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>显示窗口。</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>退出 Quorvane。</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>与 --status 或 --locations 一起使用：输出 JSON。</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>与 --status 一起使用：输出每次变化，直到退出 Quorvane。</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>解除网络锁，无需正在运行的副本。</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>输出版本。</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane 未运行，也没有可用于启动它的显示器。</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>无法启动 Quorvane。</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>Quorvane 的窗口要求输入管理员的用户名和密码。</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane 未运行。</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>已隐藏在 %1 (%2) 之后。真实 IP 为 %3。</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>正在搜索可用的 IP (%1)。</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>正在启动：服务尚未应答。</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>未隐藏：%1。</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>隧道以外的流量已被阻止。</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>停止隐藏 IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>警告！您的真实 IP 当前未隐藏！</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>正在搜索可用的 IP…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>您的真实 IP %1 当前已隐藏</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>本轮已使用所有位置。要开始新一轮，请刷新位置或切换“仅限美国”。</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>没有可用于连接的 VPN 配置。请选择一个位置以获取新配置。</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>未隐藏 IP 时可以刷新位置。</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>尚未通过隧道收到应答</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>隧道以外的流量已被阻止。</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>目前无法按下</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>停止隐藏您的真实 IP</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>隐藏您的真实 IP</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>第 1 步（共 3 步）：检查管理员</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>第 2 步（共 3 步）：获取配置</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>第 3 步（共 3 步）：启动隧道</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>选择位置，然后按“Quorvane”。</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>未检测到互联网连接，请检查您的网络设置。
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>未检测到可用的服务器。
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>该位置不可用。</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>请尝试其他位置。</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>错误</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>连接 Quorvane 服务器时出现问题，请检查您的互联网连接或防火墙设置。</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>您的真实 IP 可见</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>无法阻止隧道以外的流量，因此您的 IP 未隐藏。</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>无法解除对隧道以外流量的阻止。</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>隧道以外的流量仍被阻止</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>在终端中输入“quorvane --unlock”即可解除阻止。</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>自 Quorvane 上次运行以来，隧道以外的流量仍被阻止。</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>它在结束时未解除阻止。您的 IP 未隐藏。</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>解除阻止</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>隐藏我的 IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>您的 IP 已更改</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1，%2</translation>
    </message>
</context>
<context>
    <name>quorvane::HotKeysPane</name>
    <message>
        <source>Selected hot key is already being used by another action.</source>
        <translation>所选快捷键已被其他操作使用。</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>另一个程序正在使用此组合键。</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>在退出 Quorvane 之前属于“%1”。</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>此键盘没有该按键。</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>桌面拒绝了此组合键。</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>这些快捷键在任何程序中都有效。被替换的组合键在退出 Quorvane 之前仍然有效。</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>此桌面不提供全局快捷键：这些组合键无效。</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>可在其设置中将按键绑定到命令：%1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>分钟(&amp;M)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>该位置已满。</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1，已满</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>随机位置</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>其他</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>更多位置请见窗口</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>国旗</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>已满标记</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>隧道已断开：VPN 服务器没有应答。</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>隧道已断开：OpenVPN 已结束。</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>隧道已断开：OpenVPN 被强制终止。</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>隧道已断开：其网络设备已消失。</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>隧道已断开：其路由已被更改。</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>状态图片</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>状态行</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>当前 IP 地址</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>国旗</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>位置：</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>位置标签</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>位置</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>第二条提示</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>正在询问服务</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>更换 IP(&amp;C)</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>更换 IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>弃用 IP(&amp;D)</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>弃用 IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>更换 IP 间隔(&amp;E)</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>更换 IP 的间隔分钟数</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>分钟，微调按钮</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>仅限美国(&amp;U)</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>不重复使用 IP(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>设置(&amp;S)</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>我们的网站</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>关于 Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>退出 Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>国旗：%1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP 已隐藏</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>正在搜索</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP 未隐藏</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>地址提示</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>阻止提示</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>解除阻止(&amp;B)</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>解除对隧道以外流量的阻止</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1（%2 秒）</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>轮换(&amp;O)</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>显示或隐藏轮换控件</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>分钟</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>找不到 Quorvane 服务器的地址。</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>管理员的用户名和密码未知。</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1，构建于 %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>已复制诊断信息</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane 已在运行。</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Quorvane 的另一个副本已在运行。在其退出之前，无法打开此副本。</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>用户名或密码错误。
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>管理员账户要求的不只是密码：“%1”</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane 只能回答密码询问。密码未用于任何其他询问。</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>已弃用的 IP 地址</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>始终使用同一 IP 地址(&amp;A)</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>位置选择</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>找到想要重复使用的借用 IP 后，请勾选“始终使用同一 IP 地址”</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvMainWindowController</name>
    <message>
        <source>%1 (ver.%2)</source>
        <translation>%1 (ver.%2)</translation>
    </message>
    <message>
        <source>The name servers can be put back while your IP is not hidden.</source>
        <translation>未隐藏 IP 时可以恢复域名服务器。</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>无法恢复域名服务器。</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Quorvane 已退出。</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>没有位置“%1”。</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>您的 IP 未隐藏。</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>未能隐藏 IP。</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>未提供管理员的用户名和密码。</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>服务尚未应答。</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Quorvane 设置</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>窗格</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>我们的网站(&amp;W)</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>我们的网站</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>取消(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>应用(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsAdvanced</name>
    <message>
        <source>User agent:</source>
        <translation>用户代理：</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>保留浏览器自身的用户代理(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>使用此用户代理(&amp;U)：</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>用户代理</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>选择用户代理</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>隐藏我的 Referer 标头(&amp;H)</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>浏览器：</translation>
    </message>
    <message>
        <source>&amp;Safari</source>
        <translation>&amp;Safari</translation>
    </message>
    <message>
        <source>&amp;Firefox</source>
        <translation>&amp;Firefox</translation>
    </message>
    <message>
        <source>O&amp;pera</source>
        <translation>O&amp;pera</translation>
    </message>
    <message>
        <source>C&amp;hrome</source>
        <translation>C&amp;hrome</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsCookieCrumble</name>
    <message>
        <source>&amp;Hide my cookie headers</source>
        <translation>隐藏我的 Cookie 标头(&amp;H)</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Cookie 网站(&amp;S)：</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Cookie 网站</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>列表中没有网站。</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>删除(&amp;L)</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>删除所选网站</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>新网站(&amp;N)：</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>新的 Cookie 网站</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>添加(&amp;D)</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>添加该网站</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>隐藏 IP(&amp;H)：</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>隐藏 IP，快捷键</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>隐藏 IP，问题</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>更换 IP(&amp;G)：</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>更换 IP，快捷键</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>更换 IP，问题</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>停止隐藏 IP(&amp;S)：</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>停止隐藏 IP，快捷键</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>停止隐藏 IP，问题</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>弃用 IP(&amp;D)：</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>弃用 IP，快捷键</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>弃用 IP，问题</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>显示窗口(&amp;B)：</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>显示窗口，快捷键</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>显示窗口，问题</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>已弃用的 IP 地址(&amp;D)：</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>已弃用的 IP 地址</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>没有弃用的地址。“弃用 IP”会将正在使用的地址放到这里。</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane 不会再连接到这些地址。</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>删除(&amp;L)</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>删除所选地址</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>清空(&amp;R)</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>清空地址列表</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>更换 IP 间隔(&amp;E)</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>更换 IP 的间隔分钟数</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>分钟，微调按钮</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Quorvane 启动时隐藏我的 IP(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>登录时启动 Quorvane(&amp;S)</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>停止隐藏时恢复我的域名服务器(&amp;B)</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane 改用 8.8.8.8 和 8.8.4.4。</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>立即恢复(&amp;N)</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>立即恢复我的域名服务器</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>隧道断开时重新连接(&amp;T)</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>网络锁</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>从隐藏 IP 到停止隐藏期间，除隧道外没有任何流量离开此计算机，即使隧道或 Quorvane 发生故障也是如此。</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>阻止隧道以外的流量(&amp;F)</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>仍允许我的家庭网络(&amp;K)</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>窗口：</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>跟随桌面(&amp;P)</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>始终深色(&amp;Y)</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>始终浅色(&amp;G)</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>IP 地址</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Cookie 碎屑</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>快捷键</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>高级</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>测试 VPN</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>供测试用的自有配置。“保存”会立即存储。</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>配置(&amp;F)：</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>配置文件的路径</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>浏览(&amp;B)…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>浏览配置文件</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>用户名(&amp;U)：</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>VPN 用户名</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>密码(&amp;P)：</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>VPN 密码</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>保存配置和登录信息</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>更换 IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>复制 IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>在浏览器中检查 IP</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>显示 Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>刷新位置</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>设置…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>关于 Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>退出 Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane：您的 IP 未隐藏</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane：正在搜索可用的 IP</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane：您的 IP 已隐藏在 %1 之后</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>帮助</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>打开 OpenVPN 配置</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>OpenVPN 配置 (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>无法打开任何网络浏览器。</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>该网页为 %1</translation>
    </message>
</context>
</TS>
