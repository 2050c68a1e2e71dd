<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>Стрелка вниз</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>Стрелка влево</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>Стрелка вправо</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>Стрелка вверх</translation>
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
        <translation>Нет</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>Мобильная сеть</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>Нет подключения</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>Файлы программы не защищены.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>Другой пользователь может изменить «%1», который был бы запущен с правами администратора. Установите программу заново.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>О программе Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>Значок Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Версия</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>Скрывает ваш IP-адрес за адресом, взятым взаймы.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Наш сайт</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>Скопировать диагностику</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>Копирует версии, настройки и окончания журналов без имён, паролей и адресов</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Справка</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>Открывает руководство в браузере; F1 делает это в любом окне</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - Администратор</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>Quorvane требуются права администратора</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>Они нужны для запуска и остановки OpenVPN и настройки DNS-серверов. Введите имя и пароль администратора этого компьютера.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Имя:</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>Имя пользователя</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>&amp;Пароль:</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Пароль</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Запустить</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>Нужна ровно одна команда.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>Неожиданный аргумент «%1».</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>--json используется с --status и --locations.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>--follow используется с --status.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>Управляет запущенной копией Quorvane. Без параметров запускает её.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>Для --hide: название из списка --locations.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>Скрыть IP и вывести взятый взаймы.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>Прекратить скрывать IP.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>Сменить IP на адрес случайного местоположения и вывести его.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>Больше не использовать текущий IP; сменить его и вывести новый.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>Вывести, что скрыто.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>Вывести местоположения, по одному в строке.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>Показать окно.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>Выйти из Quorvane.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>С --status или --locations: вывести JSON.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>С --status: выводить каждое изменение до выхода из Quorvane.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>Снять сетевую блокировку, без запущенной копии.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>Вывести версию.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>Quorvane не запущен, и нет экрана, на котором его можно запустить.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>Не удалось запустить Quorvane.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>Окно Quorvane запрашивает имя и пароль администратора.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>Quorvane не запущен.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>Скрыт за %1 (%2). Настоящий IP: %3.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>Поиск доступного IP (%1).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>Запуск: служба ещё не ответила.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>Не скрыт: %1.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Трафик вне туннеля заблокирован.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>Не скрывать IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>ВНИМАНИЕ! ВАШ НАСТОЯЩИЙ IP СЕЙЧАС НЕ СКРЫТ!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>Поиск доступного IP…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>Ваш настоящий IP %1 сейчас скрыт</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>В этой ротации использованы все местоположения. Чтобы начать новую, обновите местоположения или переключите «Только США».</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>Нет конфигурации VPN для подключения. Выберите местоположение, чтобы получить новую.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>Местоположения можно обновить, пока ваш IP не скрыт.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>Через туннель пока нет ответа</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>Трафик вне туннеля заблокирован.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>Сейчас нажать нельзя</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>Прекращает скрывать ваш настоящий IP</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>Скрывает ваш настоящий IP</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>Шаг 1 из 3: проверка администратора</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>Шаг 2 из 3: получение конфигурации</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>Шаг 3 из 3: запуск туннеля</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>Выберите местоположение и нажмите «Quorvane».</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>Подключение к Интернету не обнаружено, проверьте настройки Интернета.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>Доступный сервер не обнаружен.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>Местоположение недоступно.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>Попробуйте другое местоположение.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>Не удалось подключиться к серверу Quorvane, проверьте подключение к Интернету или настройки брандмауэра.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>Ваш настоящий IP виден</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>Не удалось заблокировать трафик вне туннеля, поэтому ваш IP не скрыт.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>Не удалось снять блокировку трафика вне туннеля.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>Трафик вне туннеля всё ещё заблокирован</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>Чтобы снять блокировку, введите в терминале «quorvane --unlock».</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>Трафик вне туннеля всё ещё заблокирован с последнего запуска Quorvane.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>Программа завершилась, не сняв блокировку. Ваш IP не скрыт.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>Снять блокировку</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>Скрыть мой IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>Ваш IP изменён</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
</context>
<context>
    <name>quorvane::HotKeysPane</name>
    <message>
        <source>Selected hot key is already being used by another action.</source>
        <translation>Выбранное сочетание клавиш уже используется для другого действия.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>Это сочетание использует другая программа.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>Занято действием «%1» до выхода из Quorvane.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>На этой клавиатуре нет такой клавиши.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>Рабочий стол отклонил это сочетание.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>Они действуют в любой программе. Заменённое сочетание остаётся в силе до выхода из Quorvane.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>Этот рабочий стол не поддерживает глобальные сочетания клавиш: они не действуют.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>В его настройках клавишам можно назначить команды: %1</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>&amp;минуту</numerusform>
            <numerusform>&amp;минуты</numerusform>
            <numerusform>&amp;минут</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>Это местоположение заполнено.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>%1, заполнено</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>Случайное местоположение</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>Местоположение</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Другие</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>Остальные местоположения — в окне</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>Флаг страны</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Местоположение</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>Отметка «заполнено»</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>Туннель потерян: VPN-сервер не отвечает.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>Туннель потерян: OpenVPN завершился.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>Туннель потерян: OpenVPN был принудительно завершён.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>Туннель потерян: его сетевое устройство исчезло.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>Туннель потерян: его маршруты изменены.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>Изображение состояния</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>Строка состояния</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>Текущий IP-адрес</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>Флаг страны</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>Местоположение:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>Подпись местоположения</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>Местоположение</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>Примечание</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>Второе примечание</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>Запрос к службе</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>&amp;Сменить IP</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>Сменить IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>&amp;Отклонить IP</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>Отклонить IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>&amp;Менять IP каждые</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Минуты между сменами IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Минуты, пошаговое изменение</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>&amp;Только США</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>&amp;Не повторять IP</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>Н&amp;астройки</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Наш сайт</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>О программе Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Выйти из Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>Флаг: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP скрыт</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Идёт поиск</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP не скрыт</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>Примечание об адресе</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>Примечание о блокировке</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>Снять &amp;блокировку</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>Снять блокировку трафика вне туннеля</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 s)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>&amp;Ротация</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>Показывает или скрывает элементы управления ротацией</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Выйти</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>минуту</numerusform>
            <numerusform>минуты</numerusform>
            <numerusform>минут</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>Адрес сервера Quorvane не найден.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>Имя и пароль администратора неизвестны.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>%1, сборка от %2</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>Диагностика скопирована</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>Quorvane уже работает.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>Копия Quorvane уже работает. Эту копию нельзя открыть, пока та не будет закрыта.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>Неверное имя пользователя или пароль.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>Учётная запись администратора запрашивает не только пароль: «%1»</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>Quorvane может ответить только на запрос пароля. Ни для какого другого вопроса пароль не использовался.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Отклонённые IP-адреса</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>&amp;Всегда использовать один IP-адрес</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>Выбор местоположения</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>Отметьте «Всегда использовать один IP-адрес», когда найдёте подменный IP, который хотите использовать снова</translation>
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
        <translation>Серверы имён можно восстановить, пока ваш IP не скрыт.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>Не удалось восстановить серверы имён.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>Выполнен выход из Quorvane.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>Нет местоположения «%1».</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>Ваш IP не скрыт.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>Не удалось скрыть IP.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>Имя и пароль администратора не указаны.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>Служба ещё не ответила.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>Настройки Quorvane</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>Панели</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>&amp;Наш сайт</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>Наш сайт</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Отмена</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>&amp;Применить</translation>
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
        <translation>User-Agent:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>Оставить User-Agent &amp;браузера</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>&amp;Использовать этот User-Agent:</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>User-Agent</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>Выбрать User-Agent</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>&amp;Скрывать мой заголовок Referer</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>Браузеры:</translation>
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
        <translation>&amp;Chrome</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsCookieCrumble</name>
    <message>
        <source>&amp;Hide my cookie headers</source>
        <translation>Скрывать &amp;мои заголовки cookie</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>&amp;Сайты с cookie:</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>Сайты с cookie</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>В списке нет сайтов.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Удалить</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>Удалить выбранный сайт</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>Но&amp;вый сайт:</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>Новый сайт с cookie</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>&amp;Добавить</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>Добавить сайт</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>&amp;Скрыть IP:</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>Скрыть IP, сочетание клавиш</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>Скрыть IP, проблема</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>С&amp;менить IP:</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>Сменить IP, сочетание клавиш</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>Сменить IP, проблема</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>Н&amp;е скрывать IP:</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>Не скрывать IP, сочетание клавиш</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>Не скрывать IP, проблема</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>О&amp;тклонить IP:</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>Отклонить IP, сочетание клавиш</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>Отклонить IP, проблема</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>По&amp;казать окно:</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>Показать окно, сочетание клавиш</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>Показать окно, проблема</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>Отклонённые IP-&amp;адреса:</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>Отклонённые IP-адреса</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>Нет отклонённых адресов. «Отклонить IP» вносит сюда используемый адрес.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>Quorvane больше не подключается к этим адресам.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>&amp;Удалить</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>Удалить выбранный адрес</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>О&amp;чистить</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>Очистить список адресов</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>Менять IP &amp;каждые</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>Минуты между сменами IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>Минуты, пошаговое изменение</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>Скрывать мой IP при &amp;запуске Quorvane</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>Запускать Quorvane при в&amp;ходе в систему</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>Восстанавливать мои серверы &amp;имён после скрытия</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>Вместо них Quorvane использует 8.8.8.8 и 8.8.4.4.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>Восстановить &amp;сейчас</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>Восстановить мои серверы имён сейчас</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>П&amp;ереподключаться при потере туннеля</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>Сетевая блокировка</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>Пока ваш IP скрыт, ничто не выходит с этого компьютера мимо туннеля, даже при сбое туннеля или Quorvane.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>&amp;Блокировать трафик вне туннеля</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>Всё &amp;же разрешить мою домашнюю сеть</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>Окна:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>как &amp;рабочий стол</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>всегда &amp;тёмные</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>&amp;всегда светлые</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>IP-адреса</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>Крошки cookie</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>Клавиши</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Дополнительно</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>Тестовый VPN</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>Собственная конфигурация для тестов. «Сохранить» записывает её сразу.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>&amp;Конфигурация:</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>Путь к файлу конфигурации</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>О&amp;бзор…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>Выбрать файл конфигурации</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>&amp;Имя пользователя:</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>Имя пользователя VPN</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>П&amp;ароль:</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>Пароль VPN</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Сохранить</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>Сохранить конфигурацию и данные для входа</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>Сменить IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>Копировать IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>Проверить IP в браузере</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>Показать Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>Обновить местоположения</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>Настройки…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>О программе Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>Выйти из Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>Quorvane: ваш IP не скрыт</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>Quorvane: поиск доступного IP</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>Quorvane: ваш IP скрыт за %1</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Справка</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>Открыть конфигурацию OpenVPN</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>Конфигурации OpenVPN (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>Не удалось открыть веб-браузер.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>Страница: %1</translation>
    </message>
</context>
</TS>
