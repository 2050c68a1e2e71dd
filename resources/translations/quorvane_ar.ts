<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar_EG" sourcelanguage="en_US">
<context>
    <name>HotKeyTable</name>
    <message>
        <source>Down arrow</source>
        <translation>سهم لأسفل</translation>
    </message>
    <message>
        <source>Left arrow</source>
        <translation>سهم لليسار</translation>
    </message>
    <message>
        <source>Right arrow</source>
        <translation>سهم لليمين</translation>
    </message>
    <message>
        <source>Up arrow</source>
        <translation>سهم لأعلى</translation>
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
        <translation>بدون</translation>
    </message>
</context>
<context>
    <name>Reachability</name>
    <message>
        <source>Cellular</source>
        <translation>شبكة الجوال</translation>
    </message>
    <message>
        <source>WiFi</source>
        <translation>Wi-Fi</translation>
    </message>
    <message>
        <source>No Connection</source>
        <translation>لا يوجد اتصال</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>The program&apos;s files are not safe.</source>
        <translation>ملفات البرنامج غير آمنة.</translation>
    </message>
    <message>
        <source>Another user can change &quot;%1&quot;. It would be run with administrator rights. Please install the program again.</source>
        <translation>يمكن لمستخدم آخر تغيير «%1»، الذي سيُشغَّل بصلاحيات المدير. يُرجى تثبيت البرنامج من جديد.</translation>
    </message>
</context>
<context>
    <name>quorvane::About</name>
    <message>
        <source>About Quorvane</source>
        <translation>حول Quorvane</translation>
    </message>
    <message>
        <source>Quorvane&apos;s icon</source>
        <translation>أيقونة Quorvane</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>الإصدار</translation>
    </message>
    <message>
        <source>Hides your IP address behind one that you were lent.</source>
        <translation>يخفي عنوان IP الخاص بك خلف عنوان مُعار لك.</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>موقعنا على الويب</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>موافق</translation>
    </message>
    <message>
        <source>Copy Diagnostics</source>
        <translation>نسخ بيانات التشخيص</translation>
    </message>
    <message>
        <source>Copies versions, settings and the ends of the logs, without names, passwords and addresses</source>
        <translation>ينسخ الإصدارات والإعدادات ونهايات السجلات، دون أسماء وكلمات مرور وعناوين</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>المساعدة</translation>
    </message>
    <message>
        <source>Opens the guide in your browser; F1 does so in every window</source>
        <translation>يفتح الدليل في المتصفح؛ ويفعل F1 ذلك في كل نافذة</translation>
    </message>
</context>
<context>
    <name>quorvane::AuthenticaionView</name>
    <message>
        <source>Quorvane - Administrator</source>
        <translation>Quorvane - المسؤول</translation>
    </message>
    <message>
        <source>Quorvane needs administrator rights</source>
        <translation>يحتاج Quorvane إلى صلاحيات المسؤول</translation>
    </message>
    <message>
        <source>They start and stop OpenVPN and set the DNS servers. Enter the name and the password of an administrator of this computer.</source>
        <translation>تُستخدم لتشغيل OpenVPN وإيقافه وضبط خوادم DNS. أدخل اسم مسؤول هذا الكمبيوتر وكلمة مروره.</translation>
    </message>
    <message>
        <source>&amp;Name:</source>
        <translation>الاسم (&amp;N):</translation>
    </message>
    <message>
        <source>User name</source>
        <translation>اسم المستخدم</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>كلمة المرور (&amp;P):</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>كلمة المرور</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>بدء</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandLine</name>
    <message>
        <source>Exactly one command is needed.</source>
        <translation>يلزم أمر واحد فقط.</translation>
    </message>
    <message>
        <source>Unexpected argument &quot;%1&quot;.</source>
        <translation>وسيطة غير متوقعة «⁦%1⁩».</translation>
    </message>
    <message>
        <source>--json belongs to --status and --locations.</source>
        <translation>يُستخدم ⁦--json⁩ مع ⁦--status⁩ و⁦--locations⁩.</translation>
    </message>
    <message>
        <source>--follow belongs to --status.</source>
        <translation>يُستخدم ⁦--follow⁩ مع ⁦--status⁩.</translation>
    </message>
    <message>
        <source>Controls the running copy of Quorvane. Without options, starts it.</source>
        <translation>يتحكم في نسخة Quorvane قيد التشغيل. يشغّلها إن لم تُذكر خيارات.</translation>
    </message>
    <message>
        <source>For --hide: a title that --locations lists.</source>
        <translation>للخيار ⁦--hide⁩: عنوان يعرضه ⁦--locations⁩.</translation>
    </message>
    <message>
        <source>Hide the IP, and print the lent one.</source>
        <translation>إخفاء IP وعرض العنوان المُعار.</translation>
    </message>
    <message>
        <source>Stop hiding the IP.</source>
        <translation>إيقاف إخفاء IP.</translation>
    </message>
    <message>
        <source>Change to an IP of a random location, and print it.</source>
        <translation>التغيير إلى عنوان IP من موقع عشوائي وعرضه.</translation>
    </message>
    <message>
        <source>Never use the present IP again; change it, and print the new one.</source>
        <translation>عدم استخدام عنوان IP الحالي مجددًا؛ تغييره وعرض الجديد.</translation>
    </message>
    <message>
        <source>Print what is hidden.</source>
        <translation>عرض ما هو مخفي.</translation>
    </message>
    <message>
        <source>Print the locations, one on each line.</source>
        <translation>عرض المواقع، كل موقع في سطر.</translation>
    </message>
    <message>
        <source>Show the window.</source>
        <translation>إظهار النافذة.</translation>
    </message>
    <message>
        <source>Quit Quorvane.</source>
        <translation>إنهاء Quorvane.</translation>
    </message>
    <message>
        <source>With --status or --locations: print JSON.</source>
        <translation>مع ⁦--status⁩ أو ⁦--locations⁩: الإخراج بصيغة JSON.</translation>
    </message>
    <message>
        <source>With --status: print each change, until Quorvane quits.</source>
        <translation>مع ⁦--status⁩: عرض كل تغيير حتى إنهاء Quorvane.</translation>
    </message>
    <message>
        <source>Lift the network lock, without a running copy.</source>
        <translation>رفع قفل الشبكة دون نسخة قيد التشغيل.</translation>
    </message>
    <message>
        <source>Print the version.</source>
        <translation>عرض الإصدار.</translation>
    </message>
</context>
<context>
    <name>quorvane::CommandRunner</name>
    <message>
        <source>Quorvane is not running, and there is no display to start it on.</source>
        <translation>برنامج Quorvane ليس قيد التشغيل، ولا توجد شاشة لتشغيله عليها.</translation>
    </message>
    <message>
        <source>Quorvane could not be started.</source>
        <translation>تعذّر تشغيل Quorvane.</translation>
    </message>
    <message>
        <source>Quorvane&apos;s window asks for an administrator&apos;s name and password.</source>
        <translation>تطلب نافذة Quorvane اسم مسؤول وكلمة مروره.</translation>
    </message>
    <message>
        <source>Quorvane is not running.</source>
        <translation>برنامج Quorvane ليس قيد التشغيل.</translation>
    </message>
    <message>
        <source>Hidden behind %1 (%2). The real IP is %3.</source>
        <translation>مخفي خلف ⁦%1⁩ (⁦%2⁩). عنوان IP الحقيقي هو ⁦%3⁩.</translation>
    </message>
    <message>
        <source>Searching for an available IP (%1).</source>
        <translation>جارٍ البحث عن عنوان IP متاح (⁦%1⁩).</translation>
    </message>
    <message>
        <source>Starting: the service has not answered yet.</source>
        <translation>جارٍ البدء: لم ترد الخدمة بعد.</translation>
    </message>
    <message>
        <source>Not hidden: %1.</source>
        <translation>غير مخفي: ⁦%1⁩.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>حركة البيانات خارج النفق محظورة.</translation>
    </message>
</context>
<context>
    <name>quorvane::DisplayState</name>
    <message>
        <source>Stop Hiding IP</source>
        <translation>إيقاف إخفاء IP</translation>
    </message>
    <message>
        <source>WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!</source>
        <translation>تحذير! عنوان IP الحقيقي الخاص بك غير مخفي حاليًا!</translation>
    </message>
    <message>
        <source>Searching for an available IP...</source>
        <translation>جارٍ البحث عن عنوان IP متاح…</translation>
    </message>
    <message>
        <source>You are currently hiding your real IP %1</source>
        <translation>عنوان IP الحقيقي ⁦%1⁩ مخفي حاليًا</translation>
    </message>
    <message>
        <source>Every location has been used in this rotation. Refresh the locations or switch &quot;US only&quot; to begin a new one.</source>
        <translation>استُخدمت كل المواقع في هذه الدورة. حدِّث المواقع أو بدّل خيار «الولايات المتحدة فقط» لبدء دورة جديدة.</translation>
    </message>
    <message>
        <source>There is no VPN configuration to connect with. Choose a location to get a new one.</source>
        <translation>لا يوجد إعداد VPN للاتصال به. اختر موقعًا للحصول على إعداد جديد.</translation>
    </message>
    <message>
        <source>Locations can be refreshed while your IP is not hidden.</source>
        <translation>يمكن تحديث المواقع عندما لا يكون عنوان IP مخفيًا.</translation>
    </message>
    <message>
        <source>No answer through the tunnel yet</source>
        <translation>لا رد عبر النفق حتى الآن</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is blocked.</source>
        <translation>حركة البيانات خارج النفق محظورة.</translation>
    </message>
    <message>
        <source>Cannot be pressed at the moment</source>
        <translation>لا يمكن الضغط عليه حاليًا</translation>
    </message>
    <message>
        <source>Stops hiding your real IP</source>
        <translation>يوقف إخفاء عنوان IP الحقيقي</translation>
    </message>
    <message>
        <source>Hides your real IP</source>
        <translation>يخفي عنوان IP الحقيقي</translation>
    </message>
    <message>
        <source>Step 1 of 3: checking the administrator</source>
        <translation>الخطوة 1 من 3: التحقق من المسؤول</translation>
    </message>
    <message>
        <source>Step 2 of 3: getting a configuration</source>
        <translation>الخطوة 2 من 3: الحصول على الإعداد</translation>
    </message>
    <message>
        <source>Step 3 of 3: starting the tunnel</source>
        <translation>الخطوة 3 من 3: تشغيل النفق</translation>
    </message>
    <message>
        <source>Choose a location, then press Quorvane.</source>
        <translation>اختر موقعًا ثم اضغط على Quorvane.</translation>
    </message>
</context>
<context>
    <name>quorvane::HideIpSession</name>
    <message>
        <source>No Internet connection detected, please check your Internet settings.
</source>
        <translation>لم يُعثر على اتصال بالإنترنت، يُرجى التحقق من إعدادات الإنترنت.
</translation>
    </message>
    <message>
        <source>No available server detected.
</source>
        <translation>لم يُعثر على خادم متاح.
</translation>
    </message>
    <message>
        <source>Location is not available.</source>
        <translation>الموقع غير متاح.</translation>
    </message>
    <message>
        <source>Please try a different location.</source>
        <translation>يُرجى تجربة موقع آخر.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>خطأ</translation>
    </message>
    <message>
        <source>There was a problem connecting to the Quorvane server, please check your Internet connection or firewall settings.</source>
        <translation>حدثت مشكلة في الاتصال بخادم Quorvane، يُرجى التحقق من اتصال الإنترنت أو إعدادات جدار الحماية.</translation>
    </message>
    <message>
        <source>Your real IP is visible</source>
        <translation>عنوان IP الحقيقي ظاهر</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel could not be blocked, so your IP is not hidden.</source>
        <translation>تعذّر حظر حركة البيانات خارج النفق، لذلك عنوان IP غير مخفي.</translation>
    </message>
    <message>
        <source>The block of traffic outside the tunnel could not be lifted.</source>
        <translation>تعذّر رفع الحظر عن حركة البيانات خارج النفق.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked</source>
        <translation>حركة البيانات خارج النفق ما زالت محظورة</translation>
    </message>
    <message>
        <source>Type &quot;quorvane --unlock&quot; in a terminal to lift the block.</source>
        <translation>اكتب «⁦quorvane --unlock⁩» في الطرفية لرفع الحظر.</translation>
    </message>
    <message>
        <source>Traffic outside the tunnel is still blocked since Quorvane last ran.</source>
        <translation>حركة البيانات خارج النفق ما زالت محظورة منذ آخر تشغيل لبرنامج Quorvane.</translation>
    </message>
    <message>
        <source>It has ended without lifting the block. Your IP is not hidden.</source>
        <translation>انتهى البرنامج دون رفع الحظر. عنوان IP غير مخفي.</translation>
    </message>
    <message>
        <source>Lift the Block</source>
        <translation>رفع الحظر</translation>
    </message>
    <message>
        <source>Hide My IP</source>
        <translation>إخفاء عنوان IP</translation>
    </message>
    <message>
        <source>Your IP was changed</source>
        <translation>تغيّر عنوان IP</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>⁨%1⁩، ⁨%2⁩</translation>
    </message>
</context>
<context>
    <name>quorvane::HotKeysPane</name>
    <message>
        <source>Selected hot key is already being used by another action.</source>
        <translation>مفتاح الاختصار المحدد مستخدم بالفعل لإجراء آخر.</translation>
    </message>
    <message>
        <source>Another program uses this combination.</source>
        <translation>يستخدم برنامج آخر هذه التركيبة.</translation>
    </message>
    <message>
        <source>Belongs to &quot;%1&quot; until Quorvane quits.</source>
        <translation>يخص «%1» حتى إنهاء Quorvane.</translation>
    </message>
    <message>
        <source>This keyboard has no such key.</source>
        <translation>لا تحتوي لوحة المفاتيح على هذا المفتاح.</translation>
    </message>
    <message>
        <source>The desktop declined this combination.</source>
        <translation>رفض سطح المكتب هذه التركيبة.</translation>
    </message>
    <message>
        <source>These work while any program is in front. A combination that you replace stays in force until Quorvane quits.</source>
        <translation>تعمل هذه المفاتيح مهما كان البرنامج النشط. تبقى التركيبة التي تستبدلها سارية حتى إنهاء Quorvane.</translation>
    </message>
    <message>
        <source>This desktop offers no global hot keys: these combinations have no effect.</source>
        <translation>لا يوفر سطح المكتب هذا مفاتيح اختصار عامة: لا تأثير لهذه التركيبات.</translation>
    </message>
    <message>
        <source>Its settings can bind keys to commands: %1</source>
        <translation>يمكن في إعداداته ربط مفاتيح بأوامر: ⁦%1⁩</translation>
    </message>
</context>
<context>
    <name>quorvane::IpAddressesPane</name>
    <message numerus="yes">
        <source>&amp;minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>دقيقة (&amp;M)</numerusform>
            <numerusform>دقيقة (&amp;M)</numerusform>
            <numerusform>دقيقتين (&amp;M)</numerusform>
            <numerusform>دقائق (&amp;M)</numerusform>
            <numerusform>دقيقة (&amp;M)</numerusform>
            <numerusform>دقيقة (&amp;M)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::LocationList</name>
    <message>
        <source>This location is full.</source>
        <translation>هذا الموقع ممتلئ.</translation>
    </message>
    <message>
        <source>%1, full</source>
        <translation>‏⁨%1⁩، ممتلئ</translation>
    </message>
    <message>
        <source>Random Location</source>
        <translation>موقع عشوائي</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenu</name>
    <message>
        <source>Location</source>
        <translation>الموقع</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>أخرى</translation>
    </message>
    <message>
        <source>More locations are in the window</source>
        <translation>توجد مواقع أخرى في النافذة</translation>
    </message>
</context>
<context>
    <name>quorvane::LocationMenuItem</name>
    <message>
        <source>Country flag</source>
        <translation>علم الدولة</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>الموقع</translation>
    </message>
    <message>
        <source>Full mark</source>
        <translation>علامة الامتلاء</translation>
    </message>
</context>
<context>
    <name>quorvane::LossReason</name>
    <message>
        <source>The tunnel was lost: the VPN server does not answer.</source>
        <translation>فُقد النفق: خادم VPN لا يستجيب.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN has ended.</source>
        <translation>فُقد النفق: انتهى OpenVPN.</translation>
    </message>
    <message>
        <source>The tunnel was lost: OpenVPN was killed.</source>
        <translation>فُقد النفق: أُنهي OpenVPN قسرًا.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its network device is gone.</source>
        <translation>فُقد النفق: اختفى جهاز الشبكة الخاص به.</translation>
    </message>
    <message>
        <source>The tunnel was lost: its routes were changed.</source>
        <translation>فُقد النفق: تغيّرت مساراته.</translation>
    </message>
</context>
<context>
    <name>quorvane::MainWindow</name>
    <message>
        <source>State picture</source>
        <translation>صورة الحالة</translation>
    </message>
    <message>
        <source>Status line</source>
        <translation>سطر الحالة</translation>
    </message>
    <message>
        <source>Current IP address</source>
        <translation>عنوان IP الحالي</translation>
    </message>
    <message>
        <source>Country flag</source>
        <translation>علم الدولة</translation>
    </message>
    <message>
        <source>Location:</source>
        <translation>الموقع:</translation>
    </message>
    <message>
        <source>Location label</source>
        <translation>تسمية الموقع</translation>
    </message>
    <message>
        <source>Location</source>
        <translation>الموقع</translation>
    </message>
    <message>
        <source>Notice</source>
        <translation>ملاحظة</translation>
    </message>
    <message>
        <source>Second notice</source>
        <translation>ملاحظة ثانية</translation>
    </message>
    <message>
        <source>Asking the service</source>
        <translation>جارٍ الاستعلام من الخدمة</translation>
    </message>
    <message>
        <source>&amp;Change IP</source>
        <translation>تغيير IP ‏(&amp;C)</translation>
    </message>
    <message>
        <source>Change IP</source>
        <translation>تغيير IP</translation>
    </message>
    <message>
        <source>&amp;Discard IP</source>
        <translation>استبعاد IP ‏(&amp;D)</translation>
    </message>
    <message>
        <source>Discard IP</source>
        <translation>استبعاد IP</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>تغيير IP كل (&amp;E)</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>الدقائق بين تغييرات IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>الدقائق، بالتدريج</translation>
    </message>
    <message>
        <source>&amp;US only</source>
        <translation>الولايات المتحدة فقط (&amp;U)</translation>
    </message>
    <message>
        <source>Do not &amp;repeat IPs</source>
        <translation>عدم تكرار عناوين IP ‏(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Settings</source>
        <translation>الإعدادات (&amp;S)</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>الإعدادات</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>موقعنا على الويب</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>حول Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>إنهاء Quorvane</translation>
    </message>
    <message>
        <source>Flag: %1</source>
        <translation>العلم: %1</translation>
    </message>
    <message>
        <source>IP hidden</source>
        <translation>IP مخفي</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>جارٍ البحث</translation>
    </message>
    <message>
        <source>IP not hidden</source>
        <translation>IP غير مخفي</translation>
    </message>
    <message>
        <source>Address notice</source>
        <translation>ملاحظة عن العنوان</translation>
    </message>
    <message>
        <source>Notice of the block</source>
        <translation>ملاحظة عن الحظر</translation>
    </message>
    <message>
        <source>Lift the &amp;Block</source>
        <translation>رفع الحظر (&amp;B)</translation>
    </message>
    <message>
        <source>Lift the block of traffic outside the tunnel</source>
        <translation>رفع الحظر عن حركة البيانات خارج النفق</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>التقدم</translation>
    </message>
    <message>
        <source>%1 (%2 s)</source>
        <translation>%1 (%2 ث)</translation>
    </message>
    <message>
        <source>R&amp;otation</source>
        <translation>التدوير (&amp;O)</translation>
    </message>
    <message>
        <source>Shows or hides the controls of the rotation</source>
        <translation>يُظهر عناصر التحكم في التدوير أو يخفيها</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>إنهاء</translation>
    </message>
    <message numerus="yes">
        <source>minutes</source>
        <comment>behind their number</comment>
        <translation>
            <numerusform>دقيقة</numerusform>
            <numerusform>دقيقة</numerusform>
            <numerusform>دقيقتين</numerusform>
            <numerusform>دقائق</numerusform>
            <numerusform>دقيقة</numerusform>
            <numerusform>دقيقة</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quorvane::NetworkLock</name>
    <message>
        <source>The address of the Quorvane server was not found.</source>
        <translation>لم يُعثر على عنوان خادم Quorvane.</translation>
    </message>
    <message>
        <source>The administrator&apos;s name and password are not known.</source>
        <translation>اسم المسؤول وكلمة مروره غير معروفين.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAboutWindowController</name>
    <message>
        <source>%1 built %2</source>
        <translation>⁦%1⁩، بُني في ⁦%2⁩</translation>
    </message>
    <message>
        <source>Diagnostics Copied</source>
        <translation>تم نسخ بيانات التشخيص</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvApplicationController</name>
    <message>
        <source>Quorvane is already running.</source>
        <translation>برنامج Quorvane قيد التشغيل بالفعل.</translation>
    </message>
    <message>
        <source>There is already a copy of Quorvane running. This copy cannot be opened until that instance is quit.</source>
        <translation>توجد نسخة من Quorvane قيد التشغيل بالفعل. لا يمكن فتح هذه النسخة حتى إنهاء تلك.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvAuthenticationWindowController</name>
    <message>
        <source>You input wrong user name or password.
</source>
        <translation>اسم المستخدم أو كلمة المرور غير صحيحة.
</translation>
    </message>
    <message>
        <source>The administrator&apos;s account asks for more than its password: &quot;%1&quot;</source>
        <translation>حساب المسؤول يطلب أكثر من كلمة المرور: «%1»</translation>
    </message>
    <message>
        <source>Quorvane can answer the question for the password only. The password was not used for any other question.</source>
        <translation>لا يستطيع Quorvane الإجابة إلا عن طلب كلمة المرور. لم تُستخدم كلمة المرور لأي سؤال آخر.</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvDiscardIpTableViewController</name>
    <message>
        <source>Discarded IP addresses</source>
        <translation>عناوين IP المستبعدة</translation>
    </message>
</context>
<context>
    <name>quorvane::QrvLocationPaneController</name>
    <message>
        <source>Always Use Same IP &amp;Address</source>
        <translation>استخدام عنوان IP نفسه دائمًا (&amp;A)</translation>
    </message>
    <message>
        <source>Location choice</source>
        <translation>اختيار الموقع</translation>
    </message>
    <message>
        <source>Please check &quot;Always Use Same IP Address&quot; when you have found a fake IP you would like to reuse</source>
        <translation>حدّد «استخدام عنوان IP نفسه دائمًا» عندما تجد عنوان IP مُعارًا تود إعادة استخدامه</translation>
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
        <translation>يمكن استعادة خوادم الأسماء عندما لا يكون عنوان IP مخفيًا.</translation>
    </message>
    <message>
        <source>The name servers could not be put back.</source>
        <translation>تعذّرت استعادة خوادم الأسماء.</translation>
    </message>
</context>
<context>
    <name>quorvane::SessionControl</name>
    <message>
        <source>Quorvane was quit.</source>
        <translation>أُنهي Quorvane.</translation>
    </message>
    <message>
        <source>There is no location &quot;%1&quot;.</source>
        <translation>لا يوجد موقع «⁦%1⁩».</translation>
    </message>
    <message>
        <source>Your IP is not hidden.</source>
        <translation>عنوان IP غير مخفي.</translation>
    </message>
    <message>
        <source>No IP could be hidden.</source>
        <translation>تعذّر إخفاء أي عنوان IP.</translation>
    </message>
    <message>
        <source>No administrator&apos;s name and password were given.</source>
        <translation>لم يُقدَّم اسم مسؤول وكلمة مروره.</translation>
    </message>
    <message>
        <source>The service has not answered yet.</source>
        <translation>لم ترد الخدمة بعد.</translation>
    </message>
</context>
<context>
    <name>quorvane::Settings</name>
    <message>
        <source>Quorvane Settings</source>
        <translation>إعدادات Quorvane</translation>
    </message>
    <message>
        <source>Panes</source>
        <translation>الأجزاء</translation>
    </message>
    <message>
        <source>Our &amp;Website</source>
        <translation>موقعنا على الويب (&amp;W)</translation>
    </message>
    <message>
        <source>Our Website</source>
        <translation>موقعنا على الويب</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>إلغاء (&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Apply</source>
        <translation>تطبيق (&amp;A)</translation>
    </message>
    <message>
        <source>&amp;OK</source>
        <translation>موافق (&amp;O)</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsAdvanced</name>
    <message>
        <source>User agent:</source>
        <translation>وكيل المستخدم:</translation>
    </message>
    <message>
        <source>Leave &amp;the browser&apos;s own user agent</source>
        <translation>إبقاء وكيل المستخدم الخاص بالمتصفح (&amp;T)</translation>
    </message>
    <message>
        <source>&amp;Use this user agent:</source>
        <translation>استخدام وكيل المستخدم هذا (&amp;U):</translation>
    </message>
    <message>
        <source>User agent</source>
        <translation>وكيل المستخدم</translation>
    </message>
    <message>
        <source>Choose a user agent</source>
        <translation>اختيار وكيل المستخدم</translation>
    </message>
    <message>
        <source>&amp;Hide my referrer header</source>
        <translation>إخفاء ترويسة Referer ‏(&amp;H)</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsBrowsers</name>
    <message>
        <source>Browsers:</source>
        <translation>المتصفحات:</translation>
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
        <translation>إخفاء ترويسات ملفات الارتباط (&amp;H)</translation>
    </message>
    <message>
        <source>Cookie &amp;sites:</source>
        <translation>مواقع ملفات الارتباط (&amp;S):</translation>
    </message>
    <message>
        <source>Cookie sites</source>
        <translation>مواقع ملفات الارتباط</translation>
    </message>
    <message>
        <source>No site is listed.</source>
        <translation>لا توجد مواقع في القائمة.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>حذف (&amp;L)</translation>
    </message>
    <message>
        <source>Delete the selected site</source>
        <translation>حذف الموقع المحدد</translation>
    </message>
    <message>
        <source>&amp;New site:</source>
        <translation>موقع جديد (&amp;N):</translation>
    </message>
    <message>
        <source>New cookie site</source>
        <translation>موقع جديد لملفات الارتباط</translation>
    </message>
    <message>
        <source>A&amp;dd</source>
        <translation>إضافة (&amp;D)</translation>
    </message>
    <message>
        <source>Add the site</source>
        <translation>إضافة الموقع</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsHotkeys</name>
    <message>
        <source>&amp;Hide IP:</source>
        <translation>إخفاء IP ‏(&amp;H):</translation>
    </message>
    <message>
        <source>Hide IP, hot key</source>
        <translation>إخفاء IP، مفتاح اختصار</translation>
    </message>
    <message>
        <source>Hide IP, problem</source>
        <translation>إخفاء IP، مشكلة</translation>
    </message>
    <message>
        <source>Chan&amp;ge IP:</source>
        <translation>تغيير IP ‏(&amp;G):</translation>
    </message>
    <message>
        <source>Change IP, hot key</source>
        <translation>تغيير IP، مفتاح اختصار</translation>
    </message>
    <message>
        <source>Change IP, problem</source>
        <translation>تغيير IP، مشكلة</translation>
    </message>
    <message>
        <source>&amp;Stop hiding IP:</source>
        <translation>إيقاف إخفاء IP ‏(&amp;S):</translation>
    </message>
    <message>
        <source>Stop hiding IP, hot key</source>
        <translation>إيقاف إخفاء IP، مفتاح اختصار</translation>
    </message>
    <message>
        <source>Stop hiding IP, problem</source>
        <translation>إيقاف إخفاء IP، مشكلة</translation>
    </message>
    <message>
        <source>&amp;Discard IP:</source>
        <translation>استبعاد IP ‏(&amp;D):</translation>
    </message>
    <message>
        <source>Discard IP, hot key</source>
        <translation>استبعاد IP، مفتاح اختصار</translation>
    </message>
    <message>
        <source>Discard IP, problem</source>
        <translation>استبعاد IP، مشكلة</translation>
    </message>
    <message>
        <source>&amp;Bring up window:</source>
        <translation>إظهار النافذة (&amp;B):</translation>
    </message>
    <message>
        <source>Bring up window, hot key</source>
        <translation>إظهار النافذة، مفتاح اختصار</translation>
    </message>
    <message>
        <source>Bring up window, problem</source>
        <translation>إظهار النافذة، مشكلة</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsIpAddresses</name>
    <message>
        <source>&amp;Discarded IP addresses:</source>
        <translation>عناوين IP المستبعدة (&amp;D):</translation>
    </message>
    <message>
        <source>Discarded IP addresses</source>
        <translation>عناوين IP المستبعدة</translation>
    </message>
    <message>
        <source>No address is discarded. Discard IP puts the address in use here.</source>
        <translation>لا توجد عناوين مستبعدة. يضع «استبعاد IP» العنوان المستخدم هنا.</translation>
    </message>
    <message>
        <source>Quorvane does not connect to these addresses again.</source>
        <translation>لا يتصل Quorvane بهذه العناوين مرة أخرى.</translation>
    </message>
    <message>
        <source>De&amp;lete</source>
        <translation>حذف (&amp;L)</translation>
    </message>
    <message>
        <source>Delete the selected address</source>
        <translation>حذف العنوان المحدد</translation>
    </message>
    <message>
        <source>Clea&amp;r</source>
        <translation>مسح (&amp;R)</translation>
    </message>
    <message>
        <source>Clear the list of addresses</source>
        <translation>مسح قائمة العناوين</translation>
    </message>
    <message>
        <source>Change IP &amp;every</source>
        <translation>تغيير IP كل (&amp;E)</translation>
    </message>
    <message>
        <source>Minutes between changes of the IP</source>
        <translation>الدقائق بين تغييرات IP</translation>
    </message>
    <message>
        <source>Minutes, stepper</source>
        <translation>الدقائق، بالتدريج</translation>
    </message>
    <message>
        <source>&amp;Hide my IP when Quorvane starts</source>
        <translation>إخفاء عنوان IP عند بدء Quorvane ‏(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;Start Quorvane when I log in</source>
        <translation>بدء Quorvane عند تسجيل الدخول (&amp;S)</translation>
    </message>
    <message>
        <source>Put &amp;back my name servers when I stop hiding</source>
        <translation>استعادة خوادم الأسماء عند إيقاف الإخفاء (&amp;B)</translation>
    </message>
    <message>
        <source>Quorvane uses 8.8.8.8 and 8.8.4.4 in place of them.</source>
        <translation>يستخدم Quorvane بدلًا منها ⁦8.8.8.8⁩ و⁦8.8.4.4⁩.</translation>
    </message>
    <message>
        <source>Put Back &amp;Now</source>
        <translation>استعادة الآن (&amp;N)</translation>
    </message>
    <message>
        <source>Put back my name servers now</source>
        <translation>استعادة خوادم الأسماء الآن</translation>
    </message>
    <message>
        <source>Reconnect when the &amp;tunnel is lost</source>
        <translation>إعادة الاتصال عند فقدان النفق (&amp;T)</translation>
    </message>
    <message>
        <source>Network lock</source>
        <translation>قفل الشبكة</translation>
    </message>
    <message>
        <source>From the moment you hide your IP until you stop, nothing leaves this computer but the tunnel, even when the tunnel or Quorvane fails.</source>
        <translation>من لحظة إخفاء عنوان IP حتى إيقافه، لا يغادر هذا الكمبيوتر شيء خارج النفق، حتى عند تعطل النفق أو Quorvane.</translation>
    </message>
    <message>
        <source>Block tra&amp;ffic outside the tunnel</source>
        <translation>حظر حركة البيانات خارج النفق (&amp;F)</translation>
    </message>
    <message>
        <source>Allow my home networ&amp;k all the same</source>
        <translation>السماح بشبكتي المنزلية رغم ذلك (&amp;K)</translation>
    </message>
    <message>
        <source>Windows:</source>
        <translation>النوافذ:</translation>
    </message>
    <message>
        <source>as the deskto&amp;p</source>
        <translation>مثل سطح المكتب (&amp;P)</translation>
    </message>
    <message>
        <source>alwa&amp;ys dark</source>
        <translation>داكنة دائمًا (&amp;Y)</translation>
    </message>
    <message>
        <source>always li&amp;ght</source>
        <translation>فاتحة دائمًا (&amp;G)</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsToolbar</name>
    <message>
        <source>IP Addresses</source>
        <translation>عناوين IP</translation>
    </message>
    <message>
        <source>Cookie Crumble</source>
        <translation>فتات الارتباط</translation>
    </message>
    <message>
        <source>Hot Keys</source>
        <translation>الاختصارات</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>متقدم</translation>
    </message>
    <message>
        <source>Test VPN</source>
        <translation>VPN للاختبار</translation>
    </message>
</context>
<context>
    <name>quorvane::SettingsVpn</name>
    <message>
        <source>A configuration of your own, for testing. Save stores it at once.</source>
        <translation>إعداد خاص بك للاختبار. يخزّنه زر «حفظ» فورًا.</translation>
    </message>
    <message>
        <source>Con&amp;figuration:</source>
        <translation>الإعداد (&amp;F):</translation>
    </message>
    <message>
        <source>Path of the configuration file</source>
        <translation>مسار ملف الإعداد</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>استعراض (&amp;B)…</translation>
    </message>
    <message>
        <source>Browse for a configuration file</source>
        <translation>استعراض ملف إعداد</translation>
    </message>
    <message>
        <source>&amp;User name:</source>
        <translation>اسم المستخدم (&amp;U):</translation>
    </message>
    <message>
        <source>VPN user name</source>
        <translation>اسم مستخدم VPN</translation>
    </message>
    <message>
        <source>&amp;Password:</source>
        <translation>كلمة المرور (&amp;P):</translation>
    </message>
    <message>
        <source>VPN password</source>
        <translation>كلمة مرور VPN</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>حفظ (&amp;S)</translation>
    </message>
    <message>
        <source>Save configuration and login</source>
        <translation>حفظ الإعداد وبيانات الدخول</translation>
    </message>
</context>
<context>
    <name>quorvane::TrayPresence</name>
    <message>
        <source>Change IP</source>
        <translation>تغيير IP</translation>
    </message>
    <message>
        <source>Copy IP</source>
        <translation>نسخ IP</translation>
    </message>
    <message>
        <source>Check IP in Browser</source>
        <translation>التحقق من IP في المتصفح</translation>
    </message>
    <message>
        <source>Show Quorvane</source>
        <translation>إظهار Quorvane</translation>
    </message>
    <message>
        <source>Refresh Locations</source>
        <translation>تحديث المواقع</translation>
    </message>
    <message>
        <source>Settings...</source>
        <translation>الإعدادات…</translation>
    </message>
    <message>
        <source>About Quorvane</source>
        <translation>حول Quorvane</translation>
    </message>
    <message>
        <source>Quit Quorvane</source>
        <translation>إنهاء Quorvane</translation>
    </message>
    <message>
        <source>Quorvane: your IP is not hidden</source>
        <translation>‏Quorvane: عنوان IP غير مخفي</translation>
    </message>
    <message>
        <source>Quorvane: searching for an available IP</source>
        <translation>‏Quorvane: جارٍ البحث عن عنوان IP متاح</translation>
    </message>
    <message>
        <source>Quorvane: your IP is hidden behind %1</source>
        <translation>‏Quorvane: عنوان IP مخفي خلف ⁦%1⁩</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>المساعدة</translation>
    </message>
</context>
<context>
    <name>quorvane::VpnPane</name>
    <message>
        <source>Open OpenVPN Configuration</source>
        <translation>فتح إعداد OpenVPN</translation>
    </message>
    <message>
        <source>OpenVPN configurations (%1)</source>
        <translation>إعدادات OpenVPN (%1)</translation>
    </message>
</context>
<context>
    <name>quorvane::WebPages</name>
    <message>
        <source>No web browser could be opened.</source>
        <translation>تعذّر فتح أي متصفح ويب.</translation>
    </message>
    <message>
        <source>The page is %1</source>
        <translation>الصفحة هي ⁦%1⁩</translation>
    </message>
</context>
</TS>
