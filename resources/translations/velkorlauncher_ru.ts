<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>AdoptDialog</name>
    <message>
        <source>Use existing game files</source>
        <translation>Использовать имеющиеся файлы игры</translation>
    </message>
    <message>
        <source>Game files that are on this machine already, from an older installation or from a copied disk, need not be downloaded. Name the folder that they are in: whatever matches is taken over, under whatever names. Nothing in the folder is changed.</source>
        <translation>Файлы игры, которые уже есть на этом компьютере — от старой установки или со скопированного диска, — не нужно загружать. Укажите папку, где они лежат: всё подходящее будет взято под любыми именами. В папке ничего не изменится.</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>&amp;Папка:</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>&amp;Обзор...</translation>
    </message>
    <message>
        <source>&amp;Link files instead of copying them</source>
        <translation>&amp;Связать файлы вместо копирования</translation>
    </message>
    <message>
        <source>They take no more room then, where both folders are on one disk</source>
        <translation>Тогда они не займут места, если обе папки на одном диске</translation>
    </message>
    <message>
        <source>Linked files are shared: do not play from the old folder any more, nor change files in it. It may be deleted.</source>
        <translation>Связанные файлы общие: больше не играйте из старой папки и не изменяйте в ней файлы. Её можно удалить.</translation>
    </message>
    <message>
        <source>&amp;Use these files</source>
        <translation>&amp;Использовать эти файлы</translation>
    </message>
    <message>
        <source>Folder with game files</source>
        <translation>Папка с файлами игры</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>Такой папки нет.</translation>
    </message>
    <message>
        <source>The folder cannot be read.</source>
        <translation>Папку нельзя прочитать.</translation>
    </message>
    <message>
        <source>That folder is, or contains, the launcher&apos;s own shared cache.</source>
        <translation>Эта папка — общий кэш лаунчера или содержит его.</translation>
    </message>
</context>
<context>
    <name>BundleUnpacker</name>
    <message>
        <source>Unpacking %1 of %2 files (%3)</source>
        <translation>Распаковка: %1 из %2 файлов (%3)</translation>
    </message>
</context>
<context>
    <name>CacheMover</name>
    <message>
        <source>The settings cannot be written</source>
        <translation>Не удаётся записать настройки</translation>
    </message>
    <message>
        <source>Please choose a folder</source>
        <translation>Выберите папку</translation>
    </message>
    <message>
        <source>There is no cache to move</source>
        <translation>Нет кэша, который можно переместить</translation>
    </message>
    <message>
        <source>The new folder must not lie in the old one, nor the old one in it</source>
        <translation>Новая папка не должна находиться в старой, а старая в новой</translation>
    </message>
    <message>
        <source>%1 is not empty</source>
        <translation>Папка %1 не пуста</translation>
    </message>
    <message>
        <source>%1 cannot be written to</source>
        <translation>Нельзя записывать в %1</translation>
    </message>
    <message>
        <source>The cache is in use: please wait until the update has ended</source>
        <translation>Кэш используется: дождитесь окончания обновления</translation>
    </message>
    <message>
        <source>%1 are needed, but only %2 are free</source>
        <translation>Нужно %1, но свободно только %2</translation>
    </message>
    <message>
        <source>Copying the cache</source>
        <translation>Копирование кэша</translation>
    </message>
    <message>
        <source>Comparing the copy</source>
        <translation>Сравнение копии</translation>
    </message>
    <message>
        <source>Removing the old folder</source>
        <translation>Удаление старой папки</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 was not copied correctly</source>
        <translation>Файл %1 скопирован неверно</translation>
    </message>
</context>
<context>
    <name>ConnectionChecker</name>
    <message numerus="yes">
        <source>No answer within %n second(s)</source>
        <translation>
            <numerusform>Нет ответа в течение %n секунды</numerusform>
            <numerusform>Нет ответа в течение %n секунд</numerusform>
            <numerusform>Нет ответа в течение %n секунд</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Copier</name>
    <message>
        <source>Copying files</source>
        <translation>Копирование файлов</translation>
    </message>
    <message>
        <source>Verifying files</source>
        <translation>Проверка файлов</translation>
    </message>
</context>
<context>
    <name>CustomWebPage</name>
    <message>
        <source>Ready</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
</context>
<context>
    <name>Diagnostics</name>
    <message>
        <source>Certificate error</source>
        <translation>Ошибка сертификата</translation>
    </message>
    <message>
        <source>A certificate error has occurred:

%1

%2
</source>
        <translation>Произошла ошибка сертификата:

%1

%2
</translation>
    </message>
    <message>
        <source>%1 in %2 s, %3/s</source>
        <translation>%1 за %2 с, %3/с</translation>
    </message>
    <message>
        <source>Failed after %1: %2</source>
        <translation>Сбой после %1: %2</translation>
    </message>
    <message>
        <source>Velkor Launcher %1, %2, %3
%4</source>
        <translation>Velkor Launcher %1, %2, %3
%4</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>Загрузка</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>Кэш</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>Маршрут</translation>
    </message>
</context>
<context>
    <name>DiagnosticsDialog</name>
    <message>
        <source>Network diagnostics</source>
        <translation>Диагностика сети</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Результаты</translation>
    </message>
    <message>
        <source>&amp;Run again</source>
        <translation>&amp;Повторить</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Копировать</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Сохранить...</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>Проверяются сеть и диск. Это займёт несколько секунд.</translation>
    </message>
    <message>
        <source>All hosts can be reached.</source>
        <translation>Все серверы доступны.</translation>
    </message>
    <message>
        <source>%1 of %2 hosts make trouble.</source>
        <translation>Проблемы с серверами: %1 из %2.</translation>
    </message>
    <message>
        <source>Save the results</source>
        <translation>Сохранить результаты</translation>
    </message>
    <message>
        <source>Text files (*.txt)</source>
        <translation>Текстовые файлы (*.txt)</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>Сохранено.</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>Не удалось записать %1: %2</translation>
    </message>
</context>
<context>
    <name>DownloadControl</name>
    <message>
        <source>Paused</source>
        <translation>Приостановлено</translation>
    </message>
    <message>
        <source>Waiting until no client runs</source>
        <translation>Ждёт завершения клиентов</translation>
    </message>
</context>
<context>
    <name>DownloadFromIndexTask</name>
    <message>
        <source>Not enough room in %1: %2 needed, %3 free</source>
        <translation>Недостаточно места в %1: нужно %2, свободно %3</translation>
    </message>
    <message>
        <source>Looking for files in %1</source>
        <translation>Поиск файлов в %1</translation>
    </message>
</context>
<context>
    <name>DownloadPlanDialog</name>
    <message>
        <source>Download for %1</source>
        <translation>Загрузка для %1</translation>
    </message>
    <message>
        <source>There does not seem to be enough room for %1.</source>
        <translation>Похоже, для %1 не хватает места.</translation>
    </message>
    <message>
        <source>%1 is about to be downloaded.</source>
        <translation>Сейчас начнётся загрузка %1.</translation>
    </message>
    <message>
        <source>To be downloaded:</source>
        <translation>Нужно загрузить:</translation>
    </message>
    <message>
        <source>There already:</source>
        <translation>Уже есть:</translation>
    </message>
    <message>
        <source>Room needed:</source>
        <translation>Нужно места:</translation>
    </message>
    <message>
        <source>Room left:</source>
        <translation>Свободно:</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>неизвестно</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>Папка:</translation>
    </message>
    <message>
        <source>The figure may be wrong, for example where the file system compresses files or where it makes room by itself. A download that finds no room stops; nothing is lost.</source>
        <translation>Это число может быть неверным, например если файловая система сжимает файлы или сама освобождает место. Если места не хватит, загрузка остановится; ничего не пропадёт.</translation>
    </message>
    <message>
        <source>&quot;Not now&quot; pauses downloads until you resume them.</source>
        <translation>«Не сейчас» приостановит загрузки, пока вы их не возобновите.</translation>
    </message>
    <message>
        <source>C&amp;ontinue anyway</source>
        <translation>Всё равно &amp;продолжить</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>&amp;Загрузить</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Отмена</translation>
    </message>
    <message>
        <source>&amp;Not now</source>
        <translation>&amp;Не сейчас</translation>
    </message>
    <message>
        <source>Files:</source>
        <translation>Файлов:</translation>
    </message>
    <message>
        <source>Without an answer the update is put off in %1 s.</source>
        <translation>Без ответа обновление будет отложено через %1 с.</translation>
    </message>
    <message>
        <source>It begins by itself in %1 s.</source>
        <translation>Начнётся сама через %1 с.</translation>
    </message>
</context>
<context>
    <name>LaunchOptions</name>
    <message>
        <source>The launch command has a quotation mark without its counterpart: %1</source>
        <translation>В команде запуска не хватает кавычки: %1</translation>
    </message>
    <message>
        <source>The program of the launch command cannot be found: %1</source>
        <translation>Программа команды запуска не найдена: %1</translation>
    </message>
    <message>
        <source>An environment variable has to be written as NAME=value: %1</source>
        <translation>Переменную окружения нужно записать как ИМЯ=значение: %1</translation>
    </message>
    <message>
        <source>The launcher needs the environment variable %1 itself</source>
        <translation>Переменная окружения %1 нужна самому лаунчеру</translation>
    </message>
</context>
<context>
    <name>LaunchOptionsDialog</name>
    <message>
        <source>Launch options</source>
        <translation>Параметры запуска</translation>
    </message>
    <message>
        <source>&amp;Command in front of Wine:</source>
        <translation>&amp;Команда перед Wine:</translation>
    </message>
    <message>
        <source>For example &quot;gamemoderun&quot; or &quot;gamescope -f --&quot;. Leave it empty to start the game as usual.</source>
        <translation>Например, «gamemoderun» или «gamescope -f --». Оставьте пустым для обычного запуска.</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>&amp;Сервер:</translation>
    </message>
    <message>
        <source>&amp;Environment variables of its clients, one on each line:</source>
        <translation>&amp;Переменные окружения его клиентов, по одной в строке:</translation>
    </message>
</context>
<context>
    <name>LogDialog</name>
    <message>
        <source>Log - Velkor Launcher</source>
        <translation>Журнал - Velkor Launcher</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Копировать</translation>
    </message>
    <message>
        <source>The selected lines, or all that are shown</source>
        <translation>Выделенные строки или все показанные</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>Всё</translation>
    </message>
    <message>
        <source>Notes and worse</source>
        <translation>Сообщения и хуже</translation>
    </message>
    <message>
        <source>Warnings and worse</source>
        <translation>Предупреждения и хуже</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Ошибки</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Уровень</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>По&amp;казать:</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Поиск</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Журнал</translation>
    </message>
    <message>
        <source>%1 of %2 lines</source>
        <translation>%1 из %2 строк</translation>
    </message>
    <message>
        <source>The log file cannot be read: %1</source>
        <translation>Файл журнала не читается: %1</translation>
    </message>
</context>
<context>
    <name>LogModel</name>
    <message>
        <source>%1 (Repeated %2 times)</source>
        <translation>%1 (повторено раз: %2)</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Уровень</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>Категория</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Сообщение</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>Процесс</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Velkor Launcher - version %1</source>
        <translation>Velkor Launcher - версия %1</translation>
    </message>
    <message>
        <source>&amp;Server list</source>
        <translation>Список &amp;серверов</translation>
    </message>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>Список серверов - Velkor Launcher</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>&amp;Настройки...</translation>
    </message>
    <message>
        <source>Shared &amp;Cache...</source>
        <translation>Общий &amp;кэш...</translation>
    </message>
    <message>
        <source>C&amp;lient Settings...</source>
        <translation>Настройки к&amp;лиента...</translation>
    </message>
    <message>
        <source>Start LogLens</source>
        <translation>Открыть LogLens</translation>
    </message>
    <message>
        <source>&amp;Network diagnostics...</source>
        <translation>&amp;Диагностика сети...</translation>
    </message>
    <message>
        <source>Show in File Browser</source>
        <translation>Показать в файловом менеджере</translation>
    </message>
    <message>
        <source>Launcher logs</source>
        <translation>Журналы программы</translation>
    </message>
    <message>
        <source>Shared cache</source>
        <translation>Общий кэш</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>&amp;Обновить</translation>
    </message>
    <message>
        <source>About...</source>
        <translation>О программе...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>В&amp;ыход</translation>
    </message>
    <message>
        <source>%1 (%2 %)</source>
        <translation>%1 (%2 %)</translation>
    </message>
    <message>
        <source>The client for %1 is running</source>
        <translation>Клиент для %1 запущен</translation>
    </message>
    <message>
        <source>The client for %1 has crashed</source>
        <translation>Клиент для %1 аварийно завершился</translation>
    </message>
    <message>
        <source>The client for %1 has ended with exit code %2</source>
        <translation>Клиент для %1 завершился с кодом %2</translation>
    </message>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>Velkor Launcher</source>
        <translation>Velkor Launcher</translation>
    </message>
    <message>
        <source>Version %1
Toolkit %2
Shared cache: %3</source>
        <translation>Версия %1
Библиотека %2
Общий кэш: %3</translation>
    </message>
    <message>
        <source>Checking hosts</source>
        <translation>Проверка серверов</translation>
    </message>
    <message>
        <source>Connection error</source>
        <translation>Ошибка соединения</translation>
    </message>
    <message>
        <source>Could not connect to %1: %2</source>
        <translation>Не удалось соединиться с %1: %2</translation>
    </message>
    <message>
        <source>Connection error: %1</source>
        <translation>Ошибка соединения: %1</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (и ещё %2)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Cache folder does not exist and could not be created at {1}</source>
        <translation>Папка кэша не существует, и её не удалось создать в {1}</translation>
    </message>
    <message>
        <source>Checking Wine</source>
        <translation>Проверка Wine</translation>
    </message>
    <message>
        <source>Wine could not be updated: %1</source>
        <translation>Не удалось обновить Wine: %1</translation>
    </message>
    <message>
        <source>%1 (at %2)</source>
        <translation>%1 (в %2)</translation>
    </message>
    <message>
        <source>Looking for updates</source>
        <translation>Поиск обновлений</translation>
    </message>
    <message>
        <source>Everything is up to date. Last checked at %1.</source>
        <translation>Всё обновлено. Последняя проверка в %1.</translation>
    </message>
    <message>
        <source>An update is running: please wait until it has ended</source>
        <translation>Идёт обновление: дождитесь его окончания</translation>
    </message>
    <message>
        <source>Client Settings</source>
        <translation>Настройки клиента</translation>
    </message>
    <message>
        <source>You have settings profiles for the client. Do you want to copy them to another server?</source>
        <translation>У вас есть профили настроек клиента. Скопировать их на другой сервер?</translation>
    </message>
    <message>
        <source>Downloads are paused.</source>
        <translation>Загрузки приостановлены.</translation>
    </message>
    <message>
        <source>Downloads wait until no client runs.</source>
        <translation>Загрузки ждут завершения клиентов.</translation>
    </message>
    <message>
        <source>Downloads go on.</source>
        <translation>Загрузки продолжаются.</translation>
    </message>
    <message>
        <source>What is missing is taken from %1 where it is there.</source>
        <translation>Недостающее будет взято из %1, если оно там есть.</translation>
    </message>
    <message>
        <source>Files that need not be downloaded: %1 (%2)</source>
        <translation>Файлы, которые не нужно загружать: %1 (%2)</translation>
    </message>
</context>
<context>
    <name>MigrateSettingsGui</name>
    <message>
        <source>Client Settings</source>
        <translation>Настройки клиента</translation>
    </message>
    <message>
        <source>&amp;From</source>
        <translation>&amp;Откуда</translation>
    </message>
    <message>
        <source>C&amp;opy &gt;</source>
        <translation>&amp;Копировать &gt;</translation>
    </message>
    <message>
        <source>Copies the profile on the left to the server on the right</source>
        <translation>Копирует профиль слева на сервер справа</translation>
    </message>
    <message>
        <source>&amp;To</source>
        <translation>К&amp;уда</translation>
    </message>
    <message>
        <source>&amp;New...</source>
        <translation>&amp;Новый...</translation>
    </message>
    <message>
        <source>Makes a profile that starts as a copy of the one on the left</source>
        <translation>Создаёт профиль как копию профиля слева</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>&amp;Переименовать...</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>У&amp;далить...</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Профили</translation>
    </message>
    <message>
        <source>Name of the profile:</source>
        <translation>Имя профиля:</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Копировать</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%1 из %2</translation>
    </message>
    <message>
        <source>%1 has been copied to %2.</source>
        <translation>%1 скопирован на %2.</translation>
    </message>
    <message>
        <source>New profile</source>
        <translation>Новый профиль</translation>
    </message>
    <message>
        <source>%1 has been made.</source>
        <translation>%1 создан.</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Переименовать</translation>
    </message>
    <message>
        <source>%1 is called %2 now.</source>
        <translation>%1 теперь называется %2.</translation>
    </message>
    <message>
        <source>Do you want to delete the profile %1 of %2? Its settings are lost then.</source>
        <translation>Удалить профиль %1 из %2? Его настройки будут потеряны.</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>%1 has been deleted.</source>
        <translation>%1 удалён.</translation>
    </message>
</context>
<context>
    <name>QueueProgress</name>
    <message>
        <source>%1 of %2 files (%3)</source>
        <translation>%1 из %2 файлов (%3)</translation>
    </message>
</context>
<context>
    <name>ReportBundle</name>
    <message>
        <source>The report could not be made: %1</source>
        <translation>Не удалось создать отчёт: %1</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>Не удалось записать %1: %2</translation>
    </message>
</context>
<context>
    <name>ReportDialog</name>
    <message>
        <source>Report for the support</source>
        <translation>Отчёт для поддержки</translation>
    </message>
    <message>
        <source>This is what the report will hold. Sign-in tokens, your name and your home folder are left out of it. Untick what you do not want to share. Nothing is sent: you save the report as a file.</source>
        <translation>Вот что будет в отчёте. Токены входа, ваше имя и домашняя папка в него не входят. Снимите отметку с того, чем не хотите делиться. Ничего не отправляется: вы сохраняете отчёт в файл.</translation>
    </message>
    <message>
        <source>Parts of the report</source>
        <translation>Части отчёта</translation>
    </message>
    <message>
        <source>Content of the part</source>
        <translation>Содержание части</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>Проверяются сеть и диск. Это займёт несколько секунд.</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>&amp;Сохранить...</translation>
    </message>
    <message>
        <source>The report is ready to be saved.</source>
        <translation>Отчёт готов к сохранению.</translation>
    </message>
    <message>
        <source>Save the report</source>
        <translation>Сохранить отчёт</translation>
    </message>
    <message>
        <source>Zip files (*.zip)</source>
        <translation>Файлы zip (*.zip)</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>Сохранено как %1.</translation>
    </message>
    <message>
        <source>Nothing has been chosen.</source>
        <translation>Ничего не выбрано.</translation>
    </message>
</context>
<context>
    <name>ServerLine</name>
    <message>
        <source>Play on %1</source>
        <translation>Играть на %1</translation>
    </message>
    <message>
        <source>Progress of %1</source>
        <translation>Ход обновления %1</translation>
    </message>
    <message>
        <source>The client&apos;s settings profile</source>
        <translation>Профиль настроек клиента</translation>
    </message>
    <message>
        <source>Settings profile of %1</source>
        <translation>Профиль настроек %1</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>Status not verified</source>
        <translation>Состояние не проверено</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>Проверка...</translation>
    </message>
</context>
<context>
    <name>ServerManager</name>
    <message>
        <source>Version info not available</source>
        <translation>Сведения о версии недоступны</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>Must be logged in to %1 to get the build</source>
        <translation>Чтобы получить эту сборку, нужно войти на %1</translation>
    </message>
    <message>
        <source>%1 client file-index not available</source>
        <translation>Список файлов клиента %1 недоступен</translation>
    </message>
    <message>
        <source>Authentication is required to download %1 client</source>
        <translation>Для загрузки клиента %1 нужен вход</translation>
    </message>
    <message>
        <source>Unknown error while trying to get %1 client file-index</source>
        <translation>Неизвестная ошибка при получении списка файлов клиента %1</translation>
    </message>
    <message>
        <source>Index not available</source>
        <translation>Список недоступен</translation>
    </message>
    <message>
        <source>Copying files</source>
        <translation>Копирование файлов</translation>
    </message>
    <message>
        <source>Cannot copy files for %1 while clients are running</source>
        <translation>Файлы %1 нельзя скопировать, пока запущены клиенты</translation>
    </message>
    <message>
        <source>Error! See log for details</source>
        <translation>Ошибка! Подробности в журнале</translation>
    </message>
    <message>
        <source>Not ready to play</source>
        <translation>Ещё не готово к игре</translation>
    </message>
    <message>
        <source>Could not copy files for %1</source>
        <translation>Не удалось скопировать файлы %1</translation>
    </message>
    <message>
        <source>Client launch failure</source>
        <translation>Не удалось запустить клиент</translation>
    </message>
    <message>
        <source>Wine is being updated. Please wait until that is done.</source>
        <translation>Wine обновляется. Дождитесь окончания.</translation>
    </message>
    <message>
        <source>Could not find file %1</source>
        <translation>Файл %1 не найден</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Default</source>
        <translation>По умолчанию</translation>
    </message>
    <message>
        <source>Release</source>
        <translation>Выпуск</translation>
    </message>
    <message>
        <source>Beta</source>
        <translation>Бета</translation>
    </message>
    <message>
        <source>Development</source>
        <translation>Разработка</translation>
    </message>
    <message>
        <source>The directory %1 that is set as the shared cache location does not exist and cannot be created. Do you want to revert to the default value (%2)?</source>
        <translation>Папка %1, заданная для общего кэша, не существует, и её нельзя создать. Вернуться к значению по умолчанию (%2)?</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Предупреждение</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Latest</source>
        <translation>Последняя</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Launcher and clients</source>
        <translation>Программа и клиенты</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>&amp;Язык:</translation>
    </message>
    <message>
        <source>Language of the launcher; all of it changes at the next start</source>
        <translation>Язык программы; полностью сменится при следующем запуске</translation>
    </message>
    <message>
        <source>&amp;Version type:</source>
        <translation>&amp;Тип версии:</translation>
    </message>
    <message>
        <source>Which releases of the launcher you get</source>
        <translation>Какие версии программы вы получаете</translation>
    </message>
    <message>
        <source>&amp;Download everything:</source>
        <translation>&amp;Загружать всё:</translation>
    </message>
    <message>
        <source>Fetch all resources in advance instead of while you play</source>
        <translation>Загрузить все ресурсы заранее, а не во время игры</translation>
    </message>
    <message>
        <source>&amp;Run clients with logging:</source>
        <translation>Клиенты с &amp;журналом:</translation>
    </message>
    <message>
        <source>Show the log live in LogLens while clients run</source>
        <translation>Показывать журнал в LogLens, пока запущены клиенты</translation>
    </message>
    <message>
        <source>Run clients with D&amp;X9:</source>
        <translation>Клиенты с D&amp;X9:</translation>
    </message>
    <message>
        <source>For graphics hardware that has trouble with newer versions</source>
        <translation>Для видеокарт, которым трудно с новыми версиями</translation>
    </message>
    <message>
        <source>Run clients with &amp;64 bit:</source>
        <translation>&amp;64-разрядные клиенты:</translation>
    </message>
    <message>
        <source>Start the client&apos;s 64-bit program</source>
        <translation>Запускать 64-разрядную программу клиента</translation>
    </message>
    <message>
        <source>&amp;Minimize to tray on close:</source>
        <translation>&amp;Сворачивать в трей при закрытии:</translation>
    </message>
    <message>
        <source>Closing the window leaves the launcher in the tray</source>
        <translation>При закрытии окна программа остаётся в трее</translation>
    </message>
    <message>
        <source>&amp;Ignore certification errors:</source>
        <translation>&amp;Пропускать ошибки сертификатов:</translation>
    </message>
    <message>
        <source>Go on where a server cannot prove who it is; only for networks that you know to be safe</source>
        <translation>Продолжать, даже если сервер не может доказать, кто он; только в сетях, в которых вы уверены</translation>
    </message>
    <message>
        <source>Use system configuration for &amp;proxy:</source>
        <translation>П&amp;рокси из настроек системы:</translation>
    </message>
    <message>
        <source>Reach the network the way your system is set up to; takes effect at the next start</source>
        <translation>Выходить в сеть так, как настроена система; вступит в силу при следующем запуске</translation>
    </message>
    <message>
        <source>Enable hi&amp;gh DPI scaling:</source>
        <translation>&amp;Масштаб для чётких экранов:</translation>
    </message>
    <message>
        <source>Larger windows on fine screens; takes effect at the next start</source>
        <translation>Более крупные окна на чётких экранах; вступит в силу при следующем запуске</translation>
    </message>
    <message>
        <source>Enable hard&amp;ware rendering:</source>
        <translation>&amp;Аппаратное рисование:</translation>
    </message>
    <message>
        <source>Draw with the graphics hardware; takes effect at the next start</source>
        <translation>Рисовать с помощью видеокарты; вступит в силу при следующем запуске</translation>
    </message>
    <message>
        <source>&amp;Thread count for resource download in client</source>
        <translation>Число загру&amp;зок в клиенте</translation>
    </message>
    <message>
        <source>How many files the client fetches at a time</source>
        <translation>Сколько файлов клиент загружает одновременно</translation>
    </message>
    <message>
        <source>Test &amp;Servers</source>
        <translation>Тестовые с&amp;ерверы</translation>
    </message>
    <message>
        <source>Servers beside the main one that are kept up to date</source>
        <translation>Серверы, которые обновляются кроме основного</translation>
    </message>
    <message>
        <source>Show the running l&amp;auncher at a second start:</source>
        <translation>При втором запуске показывать уже &amp;открытое окно:</translation>
    </message>
    <message>
        <source>Instead of opening another launcher beside it; takes effect at the next start</source>
        <translation>Вместо запуска ещё одной программы рядом; вступит в силу при следующем запуске</translation>
    </message>
    <message>
        <source>Wine options</source>
        <translation>Настройки Wine</translation>
    </message>
    <message>
        <source>Use &amp;custom Wine</source>
        <translation>&amp;Свой Wine</translation>
    </message>
    <message>
        <source>Run clients with a Wine of your own instead of the one that comes with the game</source>
        <translation>Запускать клиенты под своим Wine вместо того, что поставляется с игрой</translation>
    </message>
    <message>
        <source>Custom Wine pat&amp;h</source>
        <translation>П&amp;уть к своему Wine</translation>
    </message>
    <message>
        <source>The program that starts your own Wine</source>
        <translation>Программа, которая запускает ваш Wine</translation>
    </message>
    <message>
        <source>Use d&amp;ev versions</source>
        <translation>Версии раз&amp;работки</translation>
    </message>
    <message>
        <source>Choose from versions that are still being tested</source>
        <translation>Выбирать из версий, которые ещё проверяются</translation>
    </message>
    <message>
        <source>Dev &amp;branch</source>
        <translation>&amp;Ветка разработки</translation>
    </message>
    <message>
        <source>Only development versions of this branch</source>
        <translation>Только версии разработки этой ветки</translation>
    </message>
    <message>
        <source>Wine versio&amp;n</source>
        <translation>Версия &amp;Wine</translation>
    </message>
    <message>
        <source>&quot;Latest&quot; follows what the game&apos;s makers recommend</source>
        <translation>«Последняя» следует рекомендациям создателей игры</translation>
    </message>
    <message>
        <source>WINEDEB&amp;UG</source>
        <translation>WINEDEB&amp;UG</translation>
    </message>
    <message>
        <source>What Wine writes to the log, such as &quot;+loaddll,-all&quot;</source>
        <translation>Что Wine пишет в журнал, например «+loaddll,-all»</translation>
    </message>
    <message>
        <source>Retina m&amp;ode</source>
        <translation>Режим Reti&amp;na</translation>
    </message>
    <message>
        <source>Let clients use every pixel of a fine screen</source>
        <translation>Клиенты используют каждую точку чёткого экрана</translation>
    </message>
    <message>
        <source>Auto detect</source>
        <translation>Определять автоматически</translation>
    </message>
    <message>
        <source>Video memor&amp;y</source>
        <translation>В&amp;идеопамять</translation>
    </message>
    <message>
        <source>Megabytes; what Wine tells clients that there is</source>
        <translation>Мегабайты; сколько Wine сообщает клиентам</translation>
    </message>
    <message>
        <source>Looking for versions...</source>
        <translation>Поиск версий...</translation>
    </message>
    <message>
        <source>The versions could not be loaded: %1</source>
        <translation>Не удалось загрузить версии: %1</translation>
    </message>
    <message>
        <source>The server offers no versions</source>
        <translation>Сервер не предлагает версий</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Предупреждение</translation>
    </message>
    <message>
        <source>A Development version of the launcher may be unstable. It is not recommended for users unless explicitly asked for by the developers. Are you sure want to select the Development version?</source>
        <translation>Версия для разработки может работать нестабильно. Её стоит выбирать, только если об этом попросили разработчики. Вы уверены, что хотите выбрать версию для разработки?</translation>
    </message>
    <message>
        <source>If you choose to ignore certificate errors you will not be warned about potential security incidents in the future. It is not recommended unless you are sure you are on a safe network.

Are you sure you want to continue?</source>
        <translation>Если пропускать ошибки сертификатов, вы больше не будете получать предупреждений о возможных угрозах. Делайте это, только если уверены, что сеть безопасна.

Вы уверены, что хотите продолжить?</translation>
    </message>
    <message>
        <source> MB/s</source>
        <translation> МБ/с</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>Limit o&amp;f all downloads together:</source>
        <translation>О&amp;граничение всех загрузок вместе:</translation>
    </message>
    <message>
        <source>0 is no limit</source>
        <translation>0 — без ограничения</translation>
    </message>
    <message>
        <source>&amp;Keep downloads until no client runs:</source>
        <translation>Загружать, только &amp;когда клиенты не запущены:</translation>
    </message>
    <message>
        <source>Nothing is downloaded while you play; it goes on afterwards</source>
        <translation>Пока вы играете, ничего не загружается; потом загрузка продолжится</translation>
    </message>
    <message>
        <source>Downloads are paused; the versions come when they go on.</source>
        <translation>Загрузки приостановлены; версии появятся после их возобновления.</translation>
    </message>
</context>
<context>
    <name>SimpleGui</name>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>Список серверов - Velkor Launcher</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Файл</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Menu</source>
        <translation>Меню</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>Свернуть</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>ToolsMenu</name>
    <message>
        <source>&amp;Tools</source>
        <translation>&amp;Инструменты</translation>
    </message>
    <message>
        <source>Download &amp;limit</source>
        <translation>&amp;Ограничение загрузки</translation>
    </message>
    <message>
        <source>Use existing &amp;game files...</source>
        <translation>Использовать &amp;имеющиеся файлы игры...</translation>
    </message>
    <message>
        <source>Launch &amp;options...</source>
        <translation>&amp;Параметры запуска...</translation>
    </message>
    <message>
        <source>&amp;Report for the support...</source>
        <translation>Отчёт для по&amp;ддержки...</translation>
    </message>
    <message>
        <source>Resume &amp;downloads</source>
        <translation>&amp;Возобновить загрузки</translation>
    </message>
    <message>
        <source>Pause &amp;downloads</source>
        <translation>При&amp;остановить загрузки</translation>
    </message>
    <message>
        <source>%1 MB/s</source>
        <translation>%1 МБ/с</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>Sho&amp;w the log...</source>
        <translation>Показать &amp;журнал...</translation>
    </message>
</context>
<context>
    <name>TransferMeter</name>
    <message>
        <source>%1/s on average</source>
        <translation>%1/с в среднем</translation>
    </message>
    <message>
        <source>%1, about %2 left</source>
        <translation>%1, осталось около %2</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 с</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 мин</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 ч %2 мин</translation>
    </message>
</context>
<context>
    <name>TrayStatus</name>
    <message>
        <source>%1: %2 % - %3</source>
        <translation>%1: %2 % - %3</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Готово</translation>
    </message>
    <message>
        <source>%1 is ready</source>
        <translation>%1: готово</translation>
    </message>
    <message>
        <source>The update has ended.</source>
        <translation>Обновление закончено.</translation>
    </message>
    <message>
        <source>%1 could not be updated</source>
        <translation>Не удалось обновить %1</translation>
    </message>
</context>
<context>
    <name>UpdateDialog</name>
    <message>
        <source>Version %1 of the launcher is available. This launcher was installed by your system: please update it with the system&apos;s package manager.</source>
        <translation>Доступна версия %1. Эта программа установлена вашей системой: обновите её через менеджер пакетов.</translation>
    </message>
    <message>
        <source>Velkor Launcher Update</source>
        <translation>Обновление Velkor Launcher</translation>
    </message>
    <message>
        <source>Downloading new version %1</source>
        <translation>Загрузка новой версии %1</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source> Update will be applied automatically in %2 seconds.</source>
        <translation> Обновление будет применено автоматически через %2 с.</translation>
    </message>
    <message>
        <source>The launcher goes on without it in %1 seconds.</source>
        <translation>Программа продолжит работу без него через %1 с.</translation>
    </message>
    <message>
        <source>Downloading binary index for new version %1</source>
        <translation>Загрузка списка файлов новой версии %1</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be downloaded.</source>
        <translation>Не удалось загрузить список файлов новой версии.</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be saved.</source>
        <translation>Не удалось сохранить список файлов новой версии.</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries</source>
        <translation>Загрузка новых файлов программы</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries (%1%)</source>
        <translation>Загрузка новых файлов программы (%1 %)</translation>
    </message>
    <message>
        <source>The new version could not be downloaded.</source>
        <translation>Не удалось загрузить новую версию.</translation>
    </message>
    <message>
        <source>The new version could not be downloaded: %1</source>
        <translation>Не удалось загрузить новую версию: %1</translation>
    </message>
    <message>
        <source>New version available</source>
        <translation>Доступна новая версия</translation>
    </message>
    <message>
        <source>The Velkor launcher has downloaded an update (version %1). Press OK to apply the update or Cancel to stay on the current version.</source>
        <translation>Velkor Launcher загрузил обновление (версия %1). Нажмите OK, чтобы применить его, или Отмена, чтобы остаться на текущей версии.</translation>
    </message>
    <message>
        <source>The new version cannot be installed: %1</source>
        <translation>Новую версию нельзя установить: %1</translation>
    </message>
</context>
<context>
    <name>UpdaterStarter</name>
    <message>
        <source>it has no updater.</source>
        <translation>в ней нет программы обновления.</translation>
    </message>
    <message>
        <source>the updater could not be copied.</source>
        <translation>не удалось скопировать программу обновления.</translation>
    </message>
    <message>
        <source>the updater could not be started.</source>
        <translation>не удалось запустить программу обновления.</translation>
    </message>
</context>
<context>
    <name>Verifier</name>
    <message>
        <source>is a link</source>
        <translation>является ссылкой</translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation>является папкой</translation>
    </message>
    <message>
        <source>is no regular file</source>
        <translation>не является обычным файлом</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>пуст</translation>
    </message>
    <message>
        <source>is too short</source>
        <translation>слишком короткий</translation>
    </message>
    <message>
        <source>is too long</source>
        <translation>слишком длинный</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>не читается</translation>
    </message>
    <message>
        <source>has the wrong content</source>
        <translation>имеет неверное содержимое</translation>
    </message>
    <message>
        <source>Looking at the cache</source>
        <translation>Просмотр кэша</translation>
    </message>
    <message>
        <source>%1 of %2 files (%3 of %4), %5</source>
        <translation>%1 из %2 файлов (%3 из %4), %5</translation>
    </message>
</context>
<context>
    <name>VerifierGui</name>
    <message>
        <source>Shared Cache</source>
        <translation>Общий кэш</translation>
    </message>
    <message>
        <source>&amp;Remove files that nothing needs</source>
        <translation>&amp;Удалить ненужные файлы</translation>
    </message>
    <message>
        <source>Files of builds and servers that are not kept up to date any more</source>
        <translation>Файлы сборок и серверов, которые больше не обновляются</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Ход выполнения</translation>
    </message>
    <message>
        <source>Verifying reads every file and compares it with what the game&apos;s makers have published.</source>
        <translation>При проверке каждый файл читается и сравнивается с тем, что опубликовали создатели игры.</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Результаты</translation>
    </message>
    <message>
        <source>What is found is listed here.</source>
        <translation>Здесь появится то, что будет найдено.</translation>
    </message>
    <message>
        <source>&amp;Verify</source>
        <translation>&amp;Проверить</translation>
    </message>
    <message>
        <source>&amp;Move...</source>
        <translation>П&amp;ереместить...</translation>
    </message>
    <message>
        <source>Moves the cache to another folder, such as one on a larger disk</source>
        <translation>Перемещает кэш в другую папку, например на больший диск</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>&amp;Закрыть</translation>
    </message>
    <message>
        <source>The cache is in %1</source>
        <translation>Кэш находится в %1</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Отмена</translation>
    </message>
    <message>
        <source>Reading the indexes</source>
        <translation>Чтение списков</translation>
    </message>
    <message>
        <source>All files that were checked are as they should be.</source>
        <translation>Все проверенные файлы в порядке.</translation>
    </message>
    <message>
        <source>Damaged files were found. The next refresh fetches them again.</source>
        <translation>Найдены повреждённые файлы. Следующее обновление загрузит их снова.</translation>
    </message>
    <message>
        <source>%1 is not needed</source>
        <translation>%1 не нужен</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>и ещё %1</translation>
    </message>
    <message>
        <source>Where should the cache go?</source>
        <translation>Куда переместить кэш?</translation>
    </message>
    <message>
        <source>The cache cannot be moved while clients are running</source>
        <translation>Кэш нельзя переместить, пока запущены клиенты</translation>
    </message>
    <message>
        <source>Moving the cache</source>
        <translation>Перемещение кэша</translation>
    </message>
    <message>
        <source>The cache has been moved.</source>
        <translation>Кэш перемещён.</translation>
    </message>
    <message>
        <source>The cache is where it was.</source>
        <translation>Кэш остался на месте.</translation>
    </message>
    <message>
        <source>The cache is where it was: %1</source>
        <translation>Кэш остался на месте: %1</translation>
    </message>
    <message>
        <source>Cancelling...</source>
        <translation>Отмена...</translation>
    </message>
</context>
<context>
    <name>WebGui</name>
    <message>
        <source>Couldn&apos;t get GUI version info</source>
        <translation>Не удалось получить версию интерфейса</translation>
    </message>
    <message>
        <source>See logs for details</source>
        <translation>Подробности в журналах</translation>
    </message>
    <message>
        <source>Can&apos;t get GUI version info when offline</source>
        <translation>Без сети нельзя получить версию интерфейса</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Couldn&apos;t establish gui version</source>
        <translation>Не удалось определить версию интерфейса</translation>
    </message>
    <message>
        <source>Checking GUI version...</source>
        <translation>Проверка версии интерфейса...</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>Подождите</translation>
    </message>
    <message>
        <source>Couldn&apos;t load the page</source>
        <translation>Не удалось загрузить страницу</translation>
    </message>
    <message>
        <source>The page has ended unexpectedly several times. It is loaded again soon.</source>
        <translation>Страница несколько раз неожиданно завершилась. Скоро она загрузится снова.</translation>
    </message>
</context>
<context>
    <name>WineManager</name>
    <message>
        <source>Removing the old version</source>
        <translation>Удаление старой версии</translation>
    </message>
    <message>
        <source>Wine: %1</source>
        <translation>Wine: %1</translation>
    </message>
    <message>
        <source>Preparing Wine...</source>
        <translation>Подготовка Wine...</translation>
    </message>
</context>
</TS>
