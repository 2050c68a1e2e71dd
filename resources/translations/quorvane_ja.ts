<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>下矢印</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>左矢印</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>右矢印</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>上矢印</translation>
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
        <translation>なし</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>モバイル回線</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>接続なし</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>プログラムのファイルは安全ではありません。</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>別のユーザーが「%1」を変更でき、それが管理者権限で実行されてしまいます。プログラムを再インストールしてください。</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>Quorvane について</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Quorvane のアイコン</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>バージョン</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>借りた IP アドレスの陰にあなたの IP アドレスを隠します。</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>公式サイト</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>診断情報をコピー</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>バージョン、設定、ログの末尾を、名前・パスワード・アドレスを除いてコピーします</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>ブラウザーでガイドを開きます。どのウィンドウでも F1 で開けます</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - 管理者</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane には管理者権限が必要です</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>OpenVPN の開始と終了、および DNS サーバーの設定に使用します。このコンピューターの管理者の名前とパスワードを入力してください。</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>名前(&amp;N):</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>ユーザー名</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>パスワード(&amp;P):</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>パスワード</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>開始</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>コマンドを 1 つだけ指定してください。</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>予期しない引数「%1」です。</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json は --status または --locations と一緒に使います。</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow は --status と一緒に使います。</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>実行中の Quorvane を操作します。オプションがなければ起動します。</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>--hide 用: --locations が一覧に表示する名前。</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>IP を隠し、借りた IP を表示します。</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>IP を隠すのをやめます。</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>ランダムな場所の IP に変更し、それを表示します。</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>現在の IP を二度と使わず、変更して新しい IP を表示します。</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>隠れているかどうかを表示します。</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>場所を 1 行に 1 つずつ表示します。</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>ウィンドウを表示します。</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Quorvane を終了します。</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>--status または --locations と共に: JSON で出力します。</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>--status と共に: Quorvane が終了するまで変化を表示します。</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>実行中の Quorvane がなくても、ネットワークロックを解除します。</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>バージョンを表示します。</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane は実行されておらず、起動するためのディスプレイもありません。</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Quorvane を起動できませんでした。</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>Quorvane のウィンドウが管理者の名前とパスワードを求めています。</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane は実行されていません。</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>%1 (%2) の陰に隠れています。実際の IP は %3 です。</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>利用できる IP を検索しています (%1)。</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>起動中: サービスからの応答がまだありません。</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>隠されていません: %1。</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>トンネル外の通信は遮断されています。</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>IP を隠すのをやめる</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>警告: 現在、実際の IP は隠されていません!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>利用できる IP を検索しています…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>実際の IP %1 は現在隠されています</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>この巡回ではすべての場所を使用しました。新しい巡回を始めるには、場所を更新するか「米国のみ」を切り替えてください。</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>接続に使う VPN 設定がありません。場所を選択して新しい設定を取得してください。</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>IP を隠していない間は、場所を更新できます。</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>トンネル経由の応答はまだありません</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>トンネル外の通信は遮断されています。</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>現在は押せません</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>実際の IP を隠すのをやめます</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>実際の IP を隠します</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>手順 1/3: 管理者を確認しています</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>手順 2/3: 設定を取得しています</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>手順 3/3: トンネルを開始しています</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>場所を選んで「Quorvane」を押してください。</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>インターネット接続が検出されません。インターネットの設定を確認してください。
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>利用できるサーバーが見つかりません。
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>この場所は利用できません。</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>別の場所を試してください。</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>Quorvane サーバーへの接続で問題が発生しました。インターネット接続またはファイアウォールの設定を確認してください。</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>実際の IP が見えています</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>トンネル外の通信を遮断できなかったため、IP は隠されていません。</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>トンネル外の通信の遮断を解除できませんでした。</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>トンネル外の通信はまだ遮断されています</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>遮断を解除するには、端末で「quorvane --unlock」と入力してください。</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>前回 Quorvane が動作したときから、トンネル外の通信が遮断されたままです。</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>遮断を解除せずに終了しました。IP は隠されていません。</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>遮断を解除</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>IP を隠す</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>IP が変更されました</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1、%2</translation>
    </message>
</context>
<context>
    <name>quorvane::HotKeysPane</name>
    <message>
        <source>Selected hot key is already being used by another action.</source>
        <translation>選択したショートカットキーは別の操作で使用されています。</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>この組み合わせは別のプログラムが使用しています。</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Quorvane が終了するまで「%1」のものです。</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>このキーボードにはそのキーがありません。</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>デスクトップがこの組み合わせを拒否しました。</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>どのプログラムが前面にあっても有効です。置き換えた組み合わせは Quorvane が終了するまで有効です。</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>このデスクトップはグローバルショートカットに対応していないため、これらの組み合わせは無効です。</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>その設定でキーをコマンドに割り当てられます: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>分(&amp;M)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>この場所は満員です。</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1、満員</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>ランダムな場所</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>場所</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>その他の場所はウィンドウにあります</translation>
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
        <translation>場所</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>満員の印</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>トンネルが切断されました: VPN サーバーが応答しません。</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>トンネルが切断されました: OpenVPN が終了しました。</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>トンネルが切断されました: OpenVPN が強制終了されました。</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>トンネルが切断されました: ネットワークデバイスがなくなりました。</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>トンネルが切断されました: 経路が変更されました。</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>状態の画像</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>状態の表示行</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>現在の IP アドレス</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>国旗</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>場所:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>場所のラベル</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>場所</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>お知らせ</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>2 番目のお知らせ</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>サービスに問い合わせ中</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>IP を変更(&amp;C)</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>IP を変更</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>IP を破棄(&amp;D)</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>IP を破棄</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>IP の変更間隔(&amp;E)</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>IP を変更する間隔 (分)</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>分、増減ボタン</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>米国のみ(&amp;U)</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>同じ IP を使わない(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>設定(&amp;S)</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>公式サイト</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Quorvane について</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quorvane を終了</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>国旗: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP は隠されています</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>検索中</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP は隠されていません</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>アドレスについてのお知らせ</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>遮断についてのお知らせ</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>遮断を解除(&amp;B)</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>トンネル外の通信の遮断を解除</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 秒)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>巡回(&amp;O)</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>巡回の操作部を表示または非表示にします</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>分</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>Quorvane サーバーのアドレスが見つかりませんでした。</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>管理者の名前とパスワードが不明です。</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1 (ビルド: %2)</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>診断情報をコピーしました</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane はすでに実行中です。</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Quorvane がすでに実行中です。実行中のものを終了するまで、こちらは開けません。</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>ユーザー名またはパスワードが違います。
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>管理者アカウントがパスワード以外のものを求めています: 「%1」</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane が答えられるのはパスワードの質問だけです。ほかの質問にパスワードは使用していません。</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>破棄した IP アドレス</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>常に同じ IP アドレスを使う(&amp;A)</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>場所の選択</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>再利用したい借り物の IP が見つかったら、「常に同じ IP アドレスを使う」をオンにしてください</translation>
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
        <translation>IP を隠していない間は、ネームサーバーを元に戻せます。</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>ネームサーバーを元に戻せませんでした。</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Quorvane は終了しました。</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>場所「%1」はありません。</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>IP は隠されていません。</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>IP を隠せませんでした。</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>管理者の名前とパスワードが入力されませんでした。</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>サービスからの応答がまだありません。</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Quorvane の設定</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>ペイン</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>公式サイト(&amp;W)</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>公式サイト</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>キャンセル(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>適用(&amp;A)</translation>
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
        <translation>ユーザーエージェント:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>ブラウザーのユーザーエージェントのまま(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>次のユーザーエージェントを使う(&amp;U):</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>ユーザーエージェント</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>ユーザーエージェントを選択</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>Referer ヘッダーを隠す(&amp;H)</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>ブラウザー:</translation>
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
        <translation>Cookie ヘッダーを隠す(&amp;H)</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>Cookie のサイト(&amp;S):</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Cookie のサイト</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>登録されたサイトはありません。</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>削除(&amp;L)</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>選択したサイトを削除</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>新しいサイト(&amp;N):</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>新しい Cookie のサイト</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>追加(&amp;D)</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>サイトを追加</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>IP を隠す(&amp;H):</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>IP を隠す、ショートカットキー</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>IP を隠す、問題</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>IP を変更(&amp;G):</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>IP を変更、ショートカットキー</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>IP を変更、問題</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>IP を隠すのをやめる(&amp;S):</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>IP を隠すのをやめる、ショートカットキー</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>IP を隠すのをやめる、問題</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>IP を破棄(&amp;D):</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>IP を破棄、ショートカットキー</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>IP を破棄、問題</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>ウィンドウを表示(&amp;B):</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>ウィンドウを表示、ショートカットキー</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>ウィンドウを表示、問題</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>破棄した IP アドレス(&amp;D):</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>破棄した IP アドレス</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>破棄したアドレスはありません。「IP を破棄」で使用中のアドレスがここに入ります。</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane はこれらのアドレスに再び接続しません。</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>削除(&amp;L)</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>選択したアドレスを削除</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>消去(&amp;R)</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>アドレスの一覧を消去</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>IP の変更間隔(&amp;E)</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>IP を変更する間隔 (分)</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>分、増減ボタン</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Quorvane の起動時に IP を隠す(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>ログイン時に Quorvane を起動(&amp;S)</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>隠すのをやめたらネームサーバーを元に戻す(&amp;B)</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Quorvane は代わりに 8.8.8.8 と 8.8.4.4 を使います。</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>今すぐ元に戻す(&amp;N)</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>ネームサーバーを今すぐ元に戻す</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>トンネルが切れたら再接続する(&amp;T)</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>ネットワークロック</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>IP を隠してからやめるまで、トンネルや Quorvane に障害が起きても、トンネル以外の通信はこのコンピューターから出ません。</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>トンネル外の通信を遮断する(&amp;F)</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>ホームネットワークは許可する(&amp;K)</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>ウィンドウ:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>デスクトップと同じ(&amp;P)</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>常に暗い(&amp;Y)</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>常に明るい(&amp;G)</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>IP アドレス</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Cookie くず</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>ショートカット</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>詳細</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>テスト VPN</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>テスト用の独自の設定です。「保存」ですぐに保存されます。</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>設定(&amp;F):</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>設定ファイルのパス</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>参照(&amp;B)…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>設定ファイルを参照</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>ユーザー名(&amp;U):</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>VPN のユーザー名</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>パスワード(&amp;P):</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>VPN のパスワード</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>設定とログイン情報を保存</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>IP を変更</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>IP をコピー</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>ブラウザーで IP を確認</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Quorvane を表示</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>場所を更新</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>設定…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>Quorvane について</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Quorvane を終了</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: IP は隠されていません</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: 利用できる IP を検索しています</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: IP は %1 の陰に隠されています</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>ヘルプ</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>OpenVPN の設定を開く</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>OpenVPN の設定 (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>ウェブブラウザーを開けませんでした。</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>ページは %1 です</translation>
    </message>
</context>
</TS>
