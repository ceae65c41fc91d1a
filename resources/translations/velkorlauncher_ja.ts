<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>AdoptDialog</name>
    <message>
        <source>Use existing game files</source>
        <translation>既存のゲームファイルを使う</translation>
    </message>
    <message>
        <source>Game files that are on this machine already, from an older installation or from a copied disk, need not be downloaded. Name the folder that they are in: whatever matches is taken over, under whatever names. Nothing in the folder is changed.</source>
        <translation>以前のインストールやコピーしたディスクなど、このコンピューターに既にあるゲームファイルはダウンロードする必要がありません。ファイルのあるフォルダーを指定してください。名前に関係なく、一致するものが取り込まれます。フォルダーの中身は変更されません。</translation>
    </message>
    <message>
        <source>&amp;Folder:</source>
        <translation>フォルダー(&amp;F):</translation>
    </message>
    <message>
        <source>&amp;Browse...</source>
        <translation>参照(&amp;B)...</translation>
    </message>
    <message>
        <source>&amp;Link files instead of copying them</source>
        <translation>コピーせずにリンクする(&amp;L)</translation>
    </message>
    <message>
        <source>They take no more room then, where both folders are on one disk</source>
        <translation>両方のフォルダーが同じディスクにあれば、追加の容量は不要です</translation>
    </message>
    <message>
        <source>Linked files are shared: do not play from the old folder any more, nor change files in it. It may be deleted.</source>
        <translation>リンクしたファイルは共有されます。以前のフォルダーからはプレイせず、中のファイルを変更しないでください。フォルダーは削除してもかまいません。</translation>
    </message>
    <message>
        <source>&amp;Use these files</source>
        <translation>これらのファイルを使う(&amp;U)</translation>
    </message>
    <message>
        <source>Folder with game files</source>
        <translation>ゲームファイルのフォルダー</translation>
    </message>
    <message>
        <source>There is no such folder.</source>
        <translation>そのようなフォルダーはありません。</translation>
    </message>
    <message>
        <source>The folder cannot be read.</source>
        <translation>フォルダーを読み取れません。</translation>
    </message>
    <message>
        <source>That folder is, or contains, the launcher&apos;s own shared cache.</source>
        <translation>このフォルダーはランチャー自身の共有キャッシュであるか、それを含んでいます。</translation>
    </message>
</context>
<context>
    <name>BundleUnpacker</name>
    <message>
        <source>Unpacking %1 of %2 files (%3)</source>
        <translation>展開中: %1 / %2 ファイル (%3)</translation>
    </message>
</context>
<context>
    <name>CacheMover</name>
    <message>
        <source>The settings cannot be written</source>
        <translation>設定を書き込めません</translation>
    </message>
    <message>
        <source>Please choose a folder</source>
        <translation>フォルダーを選んでください</translation>
    </message>
    <message>
        <source>There is no cache to move</source>
        <translation>移動するキャッシュがありません</translation>
    </message>
    <message>
        <source>The new folder must not lie in the old one, nor the old one in it</source>
        <translation>新しいフォルダーと古いフォルダーは、互いの中に置けません</translation>
    </message>
    <message>
        <source>%1 is not empty</source>
        <translation>%1 は空ではありません</translation>
    </message>
    <message>
        <source>%1 cannot be written to</source>
        <translation>%1 に書き込めません</translation>
    </message>
    <message>
        <source>The cache is in use: please wait until the update has ended</source>
        <translation>キャッシュは使用中です。更新が終わるまでお待ちください</translation>
    </message>
    <message>
        <source>%1 are needed, but only %2 are free</source>
        <translation>%1 必要ですが、空きは %2 しかありません</translation>
    </message>
    <message>
        <source>Copying the cache</source>
        <translation>キャッシュをコピーしています</translation>
    </message>
    <message>
        <source>Comparing the copy</source>
        <translation>コピーを比較しています</translation>
    </message>
    <message>
        <source>Removing the old folder</source>
        <translation>古いフォルダーを削除しています</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 was not copied correctly</source>
        <translation>%1 は正しくコピーされませんでした</translation>
    </message>
</context>
<context>
    <name>ConnectionChecker</name>
    <message numerus="yes">
        <source>No answer within %n second(s)</source>
        <translation>
            <numerusform>%n 秒以内に応答がありません</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Copier</name>
    <message>
        <source>Copying files</source>
        <translation>ファイルをコピーしています</translation>
    </message>
    <message>
        <source>Verifying files</source>
        <translation>ファイルを確認しています</translation>
    </message>
</context>
<context>
    <name>CustomWebPage</name>
    <message>
        <source>Ready</source>
        <translation>準備完了</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
</context>
<context>
    <name>Diagnostics</name>
    <message>
        <source>Certificate error</source>
        <translation>証明書のエラー</translation>
    </message>
    <message>
        <source>A certificate error has occurred:

%1

%2
</source>
        <translation>証明書のエラーが発生しました:

%1

%2
</translation>
    </message>
    <message>
        <source>%1 in %2 s, %3/s</source>
        <translation>%1、%2 秒、%3/秒</translation>
    </message>
    <message>
        <source>Failed after %1: %2</source>
        <translation>%1 の後に失敗: %2</translation>
    </message>
    <message>
        <source>Velkor Launcher %1, %2, %3
%4</source>
        <translation>Velkor ランチャー %1、%2、%3
%4</translation>
    </message>
    <message>
        <source>Download</source>
        <translation>ダウンロード</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>キャッシュ</translation>
    </message>
    <message>
        <source>Route</source>
        <translation>経路</translation>
    </message>
</context>
<context>
    <name>DiagnosticsDialog</name>
    <message>
        <source>Network diagnostics</source>
        <translation>ネットワーク診断</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>結果</translation>
    </message>
    <message>
        <source>&amp;Run again</source>
        <translation>もう一度実行(&amp;R)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>保存(&amp;S)...</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>ネットワークとディスクを調べています。数秒かかります。</translation>
    </message>
    <message>
        <source>All hosts can be reached.</source>
        <translation>すべてのサーバーに接続できます。</translation>
    </message>
    <message>
        <source>%1 of %2 hosts make trouble.</source>
        <translation>%2 台中 %1 台のサーバーに問題があります。</translation>
    </message>
    <message>
        <source>Save the results</source>
        <translation>結果を保存</translation>
    </message>
    <message>
        <source>Text files (*.txt)</source>
        <translation>テキストファイル (*.txt)</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>保存しました。</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>%1 を書き込めませんでした: %2</translation>
    </message>
</context>
<context>
    <name>DownloadControl</name>
    <message>
        <source>Paused</source>
        <translation>一時停止中</translation>
    </message>
    <message>
        <source>Waiting until no client runs</source>
        <translation>クライアントの終了待ち</translation>
    </message>
</context>
<context>
    <name>DownloadFromIndexTask</name>
    <message>
        <source>Not enough room in %1: %2 needed, %3 free</source>
        <translation>%1 の空きが足りません: 必要 %2、空き %3</translation>
    </message>
    <message>
        <source>Looking for files in %1</source>
        <translation>%1 のファイルを探しています</translation>
    </message>
</context>
<context>
    <name>DownloadPlanDialog</name>
    <message>
        <source>Download for %1</source>
        <translation>%1 のダウンロード</translation>
    </message>
    <message>
        <source>There does not seem to be enough room for %1.</source>
        <translation>%1 のための空き容量が足りないようです。</translation>
    </message>
    <message>
        <source>%1 is about to be downloaded.</source>
        <translation>%1 のダウンロードを始めます。</translation>
    </message>
    <message>
        <source>To be downloaded:</source>
        <translation>ダウンロード量:</translation>
    </message>
    <message>
        <source>There already:</source>
        <translation>取得済み:</translation>
    </message>
    <message>
        <source>Room needed:</source>
        <translation>必要な容量:</translation>
    </message>
    <message>
        <source>Room left:</source>
        <translation>空き容量:</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>不明</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>フォルダー:</translation>
    </message>
    <message>
        <source>The figure may be wrong, for example where the file system compresses files or where it makes room by itself. A download that finds no room stops; nothing is lost.</source>
        <translation>ファイルシステムが圧縮を行う場合や自動で容量を空ける場合など、この値は正しくないことがあります。容量が足りなくなるとダウンロードは止まりますが、何も失われません。</translation>
    </message>
    <message>
        <source>&quot;Not now&quot; pauses downloads until you resume them.</source>
        <translation>「後で」を選ぶと、再開するまでダウンロードは一時停止します。</translation>
    </message>
    <message>
        <source>C&amp;ontinue anyway</source>
        <translation>それでも続ける(&amp;O)</translation>
    </message>
    <message>
        <source>&amp;Download</source>
        <translation>ダウンロード(&amp;D)</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>キャンセル(&amp;C)</translation>
    </message>
    <message>
        <source>&amp;Not now</source>
        <translation>後で(&amp;N)</translation>
    </message>
    <message>
        <source>Files:</source>
        <translation>ファイル数:</translation>
    </message>
    <message>
        <source>Without an answer the update is put off in %1 s.</source>
        <translation>回答がなければ %1 秒後に更新を見送ります。</translation>
    </message>
    <message>
        <source>It begins by itself in %1 s.</source>
        <translation>%1 秒後に自動で始まります。</translation>
    </message>
</context>
<context>
    <name>LaunchOptions</name>
    <message>
        <source>The launch command has a quotation mark without its counterpart: %1</source>
        <translation>起動コマンドの引用符が閉じられていません: %1</translation>
    </message>
    <message>
        <source>The program of the launch command cannot be found: %1</source>
        <translation>起動コマンドのプログラムが見つかりません: %1</translation>
    </message>
    <message>
        <source>An environment variable has to be written as NAME=value: %1</source>
        <translation>環境変数は NAME=値 の形で書いてください: %1</translation>
    </message>
    <message>
        <source>The launcher needs the environment variable %1 itself</source>
        <translation>環境変数 %1 はランチャー自身が使用します</translation>
    </message>
</context>
<context>
    <name>LaunchOptionsDialog</name>
    <message>
        <source>Launch options</source>
        <translation>起動オプション</translation>
    </message>
    <message>
        <source>&amp;Command in front of Wine:</source>
        <translation>Wine の前に置くコマンド(&amp;C):</translation>
    </message>
    <message>
        <source>For example &quot;gamemoderun&quot; or &quot;gamescope -f --&quot;. Leave it empty to start the game as usual.</source>
        <translation>例: &quot;gamemoderun&quot;、&quot;gamescope -f --&quot;。空のままにすると通常どおり起動します。</translation>
    </message>
    <message>
        <source>&amp;Server:</source>
        <translation>サーバー(&amp;S):</translation>
    </message>
    <message>
        <source>&amp;Environment variables of its clients, one on each line:</source>
        <translation>クライアントの環境変数（1 行に 1 つ）(&amp;E):</translation>
    </message>
</context>
<context>
    <name>LogDialog</name>
    <message>
        <source>Log - Velkor Launcher</source>
        <translation>ログ - Velkor Launcher</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>The selected lines, or all that are shown</source>
        <translation>選択した行、または表示中のすべての行</translation>
    </message>
    <message>
        <source>Everything</source>
        <translation>すべて</translation>
    </message>
    <message>
        <source>Notes and worse</source>
        <translation>情報以上</translation>
    </message>
    <message>
        <source>Warnings and worse</source>
        <translation>警告以上</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>レベル</translation>
    </message>
    <message>
        <source>&amp;Show:</source>
        <translation>表示(&amp;S):</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>検索</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>ログ</translation>
    </message>
    <message>
        <source>%1 of %2 lines</source>
        <translation>%1 / %2 行</translation>
    </message>
    <message>
        <source>The log file cannot be read: %1</source>
        <translation>ログファイルを読み取れません: %1</translation>
    </message>
</context>
<context>
    <name>LogModel</name>
    <message>
        <source>%1 (Repeated %2 times)</source>
        <translation>%1（%2 回繰り返し）</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>時刻</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>レベル</translation>
    </message>
    <message>
        <source>Category</source>
        <translation>カテゴリ</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>メッセージ</translation>
    </message>
    <message>
        <source>Process</source>
        <translation>プロセス</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Velkor Launcher - version %1</source>
        <translation>Velkor ランチャー - バージョン %1</translation>
    </message>
    <message>
        <source>&amp;Server list</source>
        <translation>サーバー一覧(&amp;S)</translation>
    </message>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>サーバー一覧 - Velkor ランチャー</translation>
    </message>
    <message>
        <source>Se&amp;ttings...</source>
        <translation>設定(&amp;T)...</translation>
    </message>
    <message>
        <source>Shared &amp;Cache...</source>
        <translation>共有キャッシュ(&amp;C)...</translation>
    </message>
    <message>
        <source>C&amp;lient Settings...</source>
        <translation>クライアントの設定(&amp;L)...</translation>
    </message>
    <message>
        <source>Start LogLens</source>
        <translation>LogLens を開始</translation>
    </message>
    <message>
        <source>&amp;Network diagnostics...</source>
        <translation>ネットワーク診断(&amp;N)...</translation>
    </message>
    <message>
        <source>Show in File Browser</source>
        <translation>ファイルマネージャーで表示</translation>
    </message>
    <message>
        <source>Launcher logs</source>
        <translation>ランチャーのログ</translation>
    </message>
    <message>
        <source>Shared cache</source>
        <translation>共有キャッシュ</translation>
    </message>
    <message>
        <source>&amp;Refresh</source>
        <translation>更新を確認(&amp;R)</translation>
    </message>
    <message>
        <source>About...</source>
        <translation>ランチャーについて...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>終了(&amp;X)</translation>
    </message>
    <message>
        <source>%1 (%2 %)</source>
        <translation>%1 (%2 %)</translation>
    </message>
    <message>
        <source>The client for %1 is running</source>
        <translation>%1 のクライアントを実行中です</translation>
    </message>
    <message>
        <source>The client for %1 has crashed</source>
        <translation>%1 のクライアントが異常終了しました</translation>
    </message>
    <message>
        <source>The client for %1 has ended with exit code %2</source>
        <translation>%1 のクライアントは終了コード %2 で終了しました</translation>
    </message>
    <message>
        <source>About</source>
        <translation>ランチャーについて</translation>
    </message>
    <message>
        <source>Velkor Launcher</source>
        <translation>Velkor ランチャー</translation>
    </message>
    <message>
        <source>Version %1
Toolkit %2
Shared cache: %3</source>
        <translation>バージョン %1
ツールキット %2
共有キャッシュ: %3</translation>
    </message>
    <message>
        <source>Checking hosts</source>
        <translation>サーバーを確認しています</translation>
    </message>
    <message>
        <source>Connection error</source>
        <translation>接続エラー</translation>
    </message>
    <message>
        <source>Could not connect to %1: %2</source>
        <translation>%1 に接続できませんでした: %2</translation>
    </message>
    <message>
        <source>Connection error: %1</source>
        <translation>接続エラー: %1</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1 (ほか %2 件)</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Cache folder does not exist and could not be created at {1}</source>
        <translation>キャッシュフォルダーが存在せず、{1} に作成できませんでした</translation>
    </message>
    <message>
        <source>Checking Wine</source>
        <translation>Wine を確認しています</translation>
    </message>
    <message>
        <source>Wine could not be updated: %1</source>
        <translation>Wine を更新できませんでした: %1</translation>
    </message>
    <message>
        <source>%1 (at %2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>Looking for updates</source>
        <translation>更新を探しています</translation>
    </message>
    <message>
        <source>Everything is up to date. Last checked at %1.</source>
        <translation>すべて最新です。最終確認: %1。</translation>
    </message>
    <message>
        <source>An update is running: please wait until it has ended</source>
        <translation>更新中です。終わるまでお待ちください</translation>
    </message>
    <message>
        <source>Client Settings</source>
        <translation>クライアントの設定</translation>
    </message>
    <message>
        <source>You have settings profiles for the client. Do you want to copy them to another server?</source>
        <translation>クライアントの設定プロファイルがあります。別のサーバーにコピーしますか?</translation>
    </message>
    <message>
        <source>Downloads are paused.</source>
        <translation>ダウンロードは一時停止中です。</translation>
    </message>
    <message>
        <source>Downloads wait until no client runs.</source>
        <translation>クライアントが終了するまでダウンロードを待ちます。</translation>
    </message>
    <message>
        <source>Downloads go on.</source>
        <translation>ダウンロードを続けます。</translation>
    </message>
    <message>
        <source>What is missing is taken from %1 where it is there.</source>
        <translation>不足分は %1 にあればそこから取り込みます。</translation>
    </message>
    <message>
        <source>Files that need not be downloaded: %1 (%2)</source>
        <translation>ダウンロード不要なファイル: %1（%2）</translation>
    </message>
</context>
<context>
    <name>MigrateSettingsGui</name>
    <message>
        <source>Client Settings</source>
        <translation>クライアントの設定</translation>
    </message>
    <message>
        <source>&amp;From</source>
        <translation>コピー元(&amp;F)</translation>
    </message>
    <message>
        <source>C&amp;opy &gt;</source>
        <translation>コピー(&amp;O) &gt;</translation>
    </message>
    <message>
        <source>Copies the profile on the left to the server on the right</source>
        <translation>左のプロファイルを右のサーバーにコピーします</translation>
    </message>
    <message>
        <source>&amp;To</source>
        <translation>コピー先(&amp;T)</translation>
    </message>
    <message>
        <source>&amp;New...</source>
        <translation>新規(&amp;N)...</translation>
    </message>
    <message>
        <source>Makes a profile that starts as a copy of the one on the left</source>
        <translation>左のプロファイルのコピーとして新しく作ります</translation>
    </message>
    <message>
        <source>&amp;Rename...</source>
        <translation>名前を変更(&amp;R)...</translation>
    </message>
    <message>
        <source>&amp;Delete...</source>
        <translation>削除(&amp;D)...</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>プロファイル</translation>
    </message>
    <message>
        <source>Name of the profile:</source>
        <translation>プロファイル名:</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>%1 from %2</source>
        <translation>%2 の %1</translation>
    </message>
    <message>
        <source>%1 has been copied to %2.</source>
        <translation>%1 を %2 にコピーしました。</translation>
    </message>
    <message>
        <source>New profile</source>
        <translation>新しいプロファイル</translation>
    </message>
    <message>
        <source>%1 has been made.</source>
        <translation>%1 を作成しました。</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>名前を変更</translation>
    </message>
    <message>
        <source>%1 is called %2 now.</source>
        <translation>%1 の名前は %2 になりました。</translation>
    </message>
    <message>
        <source>Do you want to delete the profile %1 of %2? Its settings are lost then.</source>
        <translation>%2 のプロファイル %1 を削除しますか? その設定は失われます。</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>%1 has been deleted.</source>
        <translation>%1 を削除しました。</translation>
    </message>
</context>
<context>
    <name>QueueProgress</name>
    <message>
        <source>%1 of %2 files (%3)</source>
        <translation>%1 / %2 ファイル (%3)</translation>
    </message>
</context>
<context>
    <name>ReportBundle</name>
    <message>
        <source>The report could not be made: %1</source>
        <translation>レポートを作成できませんでした: %1</translation>
    </message>
    <message>
        <source>%1 could not be written: %2</source>
        <translation>%1 に書き込めませんでした: %2</translation>
    </message>
</context>
<context>
    <name>ReportDialog</name>
    <message>
        <source>Report for the support</source>
        <translation>サポート用レポート</translation>
    </message>
    <message>
        <source>This is what the report will hold. Sign-in tokens, your name and your home folder are left out of it. Untick what you do not want to share. Nothing is sent: you save the report as a file.</source>
        <translation>レポートに含まれる内容です。サインインのトークン、あなたの名前、ホームフォルダーは除かれています。共有したくないものはチェックを外してください。何も送信されません。レポートはファイルとして保存します。</translation>
    </message>
    <message>
        <source>Parts of the report</source>
        <translation>レポートの内容</translation>
    </message>
    <message>
        <source>Content of the part</source>
        <translation>項目の内容</translation>
    </message>
    <message>
        <source>Looking at the network and the disk. This takes some seconds.</source>
        <translation>ネットワークとディスクを調べています。数秒かかります。</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>&amp;Save...</source>
        <translation>保存(&amp;S)...</translation>
    </message>
    <message>
        <source>The report is ready to be saved.</source>
        <translation>レポートを保存できます。</translation>
    </message>
    <message>
        <source>Save the report</source>
        <translation>レポートを保存</translation>
    </message>
    <message>
        <source>Zip files (*.zip)</source>
        <translation>Zip ファイル (*.zip)</translation>
    </message>
    <message>
        <source>Saved as %1.</source>
        <translation>%1 に保存しました。</translation>
    </message>
    <message>
        <source>Nothing has been chosen.</source>
        <translation>何も選択されていません。</translation>
    </message>
</context>
<context>
    <name>ServerLine</name>
    <message>
        <source>Play on %1</source>
        <translation>%1 でプレイ</translation>
    </message>
    <message>
        <source>Progress of %1</source>
        <translation>%1 の進行状況</translation>
    </message>
    <message>
        <source>The client&apos;s settings profile</source>
        <translation>クライアントの設定プロファイル</translation>
    </message>
    <message>
        <source>Settings profile of %1</source>
        <translation>%1 の設定プロファイル</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>準備完了</translation>
    </message>
    <message>
        <source>Status not verified</source>
        <translation>状態は未確認</translation>
    </message>
    <message>
        <source>Checking...</source>
        <translation>確認中...</translation>
    </message>
</context>
<context>
    <name>ServerManager</name>
    <message>
        <source>Version info not available</source>
        <translation>バージョン情報がありません</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>準備完了</translation>
    </message>
    <message>
        <source>Must be logged in to %1 to get the build</source>
        <translation>このビルドを取得するには %1 にログインしてください</translation>
    </message>
    <message>
        <source>%1 client file-index not available</source>
        <translation>%1 のクライアントのファイル一覧がありません</translation>
    </message>
    <message>
        <source>Authentication is required to download %1 client</source>
        <translation>%1 のクライアントのダウンロードには認証が必要です</translation>
    </message>
    <message>
        <source>Unknown error while trying to get %1 client file-index</source>
        <translation>%1 のクライアントのファイル一覧の取得中に不明なエラーが発生しました</translation>
    </message>
    <message>
        <source>Index not available</source>
        <translation>一覧がありません</translation>
    </message>
    <message>
        <source>Copying files</source>
        <translation>ファイルをコピーしています</translation>
    </message>
    <message>
        <source>Cannot copy files for %1 while clients are running</source>
        <translation>クライアントの実行中は %1 のファイルをコピーできません</translation>
    </message>
    <message>
        <source>Error! See log for details</source>
        <translation>エラーです。詳しくはログをご覧ください</translation>
    </message>
    <message>
        <source>Not ready to play</source>
        <translation>まだプレイできません</translation>
    </message>
    <message>
        <source>Could not copy files for %1</source>
        <translation>%1 のファイルをコピーできませんでした</translation>
    </message>
    <message>
        <source>Client launch failure</source>
        <translation>クライアントを起動できません</translation>
    </message>
    <message>
        <source>Wine is being updated. Please wait until that is done.</source>
        <translation>Wine を更新しています。終わるまでお待ちください。</translation>
    </message>
    <message>
        <source>Could not find file %1</source>
        <translation>ファイル %1 が見つかりません</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Default</source>
        <translation>既定</translation>
    </message>
    <message>
        <source>Release</source>
        <translation>正式版</translation>
    </message>
    <message>
        <source>Beta</source>
        <translation>ベータ</translation>
    </message>
    <message>
        <source>Development</source>
        <translation>開発版</translation>
    </message>
    <message>
        <source>The directory %1 that is set as the shared cache location does not exist and cannot be created. Do you want to revert to the default value (%2)?</source>
        <translation>共有キャッシュに設定されているフォルダー %1 は存在せず、作成もできません。既定値 (%2) に戻しますか?</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
</context>
<context>
    <name>SettingsDialog</name>
    <message>
        <source>Latest</source>
        <translation>最新</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Launcher and clients</source>
        <translation>ランチャーとクライアント</translation>
    </message>
    <message>
        <source>&amp;Language:</source>
        <translation>言語(&amp;L):</translation>
    </message>
    <message>
        <source>Language of the launcher; all of it changes at the next start</source>
        <translation>ランチャーの言語。完全に変わるのは次回の起動時です</translation>
    </message>
    <message>
        <source>&amp;Version type:</source>
        <translation>バージョンの種類(&amp;V):</translation>
    </message>
    <message>
        <source>Which releases of the launcher you get</source>
        <translation>受け取るランチャーの種類</translation>
    </message>
    <message>
        <source>&amp;Download everything:</source>
        <translation>すべてダウンロード(&amp;D):</translation>
    </message>
    <message>
        <source>Fetch all resources in advance instead of while you play</source>
        <translation>プレイ中ではなく、前もってすべてのデータを取得します</translation>
    </message>
    <message>
        <source>&amp;Run clients with logging:</source>
        <translation>ログ付きでクライアントを実行(&amp;R):</translation>
    </message>
    <message>
        <source>Show the log live in LogLens while clients run</source>
        <translation>クライアントの実行中、ログを LogLens に表示します</translation>
    </message>
    <message>
        <source>Run clients with D&amp;X9:</source>
        <translation>DX9 でクライアントを実行(&amp;X):</translation>
    </message>
    <message>
        <source>For graphics hardware that has trouble with newer versions</source>
        <translation>新しいバージョンで問題が起きるグラフィックス機器向け</translation>
    </message>
    <message>
        <source>Run clients with &amp;64 bit:</source>
        <translation>64 ビットでクライアントを実行(&amp;6):</translation>
    </message>
    <message>
        <source>Start the client&apos;s 64-bit program</source>
        <translation>64 ビット版のクライアントを起動します</translation>
    </message>
    <message>
        <source>&amp;Minimize to tray on close:</source>
        <translation>閉じるときトレイに最小化(&amp;M):</translation>
    </message>
    <message>
        <source>Closing the window leaves the launcher in the tray</source>
        <translation>ウィンドウを閉じてもランチャーはトレイに残ります</translation>
    </message>
    <message>
        <source>&amp;Ignore certification errors:</source>
        <translation>証明書のエラーを無視(&amp;I):</translation>
    </message>
    <message>
        <source>Go on where a server cannot prove who it is; only for networks that you know to be safe</source>
        <translation>サーバーの身元を確認できなくても続けます。安全と分かっているネットワークでのみ使ってください</translation>
    </message>
    <message>
        <source>Use system configuration for &amp;proxy:</source>
        <translation>システムのプロキシを使用(&amp;P):</translation>
    </message>
    <message>
        <source>Reach the network the way your system is set up to; takes effect at the next start</source>
        <translation>システムの設定どおりにネットワークに接続します。次回の起動から有効です</translation>
    </message>
    <message>
        <source>Enable hi&amp;gh DPI scaling:</source>
        <translation>高 DPI の拡大(&amp;G):</translation>
    </message>
    <message>
        <source>Larger windows on fine screens; takes effect at the next start</source>
        <translation>高精細な画面でウィンドウを大きくします。次回の起動から有効です</translation>
    </message>
    <message>
        <source>Enable hard&amp;ware rendering:</source>
        <translation>ハードウェア描画(&amp;W):</translation>
    </message>
    <message>
        <source>Draw with the graphics hardware; takes effect at the next start</source>
        <translation>グラフィックス機器で描画します。次回の起動から有効です</translation>
    </message>
    <message>
        <source>&amp;Thread count for resource download in client</source>
        <translation>クライアントの同時ダウンロード数(&amp;T)</translation>
    </message>
    <message>
        <source>How many files the client fetches at a time</source>
        <translation>クライアントが同時に取得するファイルの数</translation>
    </message>
    <message>
        <source>Test &amp;Servers</source>
        <translation>テストサーバー(&amp;S)</translation>
    </message>
    <message>
        <source>Servers beside the main one that are kept up to date</source>
        <translation>メインのほかに最新に保つサーバー</translation>
    </message>
    <message>
        <source>Show the running l&amp;auncher at a second start:</source>
        <translation>2 回目の起動では実行中のランチャーを表示(&amp;A):</translation>
    </message>
    <message>
        <source>Instead of opening another launcher beside it; takes effect at the next start</source>
        <translation>別のランチャーを並べて開く代わりに表示します。次回の起動から有効です</translation>
    </message>
    <message>
        <source>Wine options</source>
        <translation>Wine のオプション</translation>
    </message>
    <message>
        <source>Use &amp;custom Wine</source>
        <translation>独自の Wine を使用(&amp;C)</translation>
    </message>
    <message>
        <source>Run clients with a Wine of your own instead of the one that comes with the game</source>
        <translation>ゲームに付属の Wine の代わりに独自の Wine でクライアントを実行します</translation>
    </message>
    <message>
        <source>Custom Wine pat&amp;h</source>
        <translation>独自の Wine のパス(&amp;H)</translation>
    </message>
    <message>
        <source>The program that starts your own Wine</source>
        <translation>独自の Wine を起動するプログラム</translation>
    </message>
    <message>
        <source>Use d&amp;ev versions</source>
        <translation>開発版を使用(&amp;E)</translation>
    </message>
    <message>
        <source>Choose from versions that are still being tested</source>
        <translation>テスト中のバージョンから選びます</translation>
    </message>
    <message>
        <source>Dev &amp;branch</source>
        <translation>開発ブランチ(&amp;B)</translation>
    </message>
    <message>
        <source>Only development versions of this branch</source>
        <translation>このブランチの開発版だけ</translation>
    </message>
    <message>
        <source>Wine versio&amp;n</source>
        <translation>Wine のバージョン(&amp;N)</translation>
    </message>
    <message>
        <source>&quot;Latest&quot; follows what the game&apos;s makers recommend</source>
        <translation>「最新」はゲームの開発元が推奨するものに従います</translation>
    </message>
    <message>
        <source>WINEDEB&amp;UG</source>
        <translation>WINEDEBUG(&amp;U)</translation>
    </message>
    <message>
        <source>What Wine writes to the log, such as &quot;+loaddll,-all&quot;</source>
        <translation>Wine がログに書く内容。例: 「+loaddll,-all」</translation>
    </message>
    <message>
        <source>Retina m&amp;ode</source>
        <translation>Retina モード(&amp;O)</translation>
    </message>
    <message>
        <source>Let clients use every pixel of a fine screen</source>
        <translation>高精細な画面のすべての画素をクライアントが使えるようにします</translation>
    </message>
    <message>
        <source>Auto detect</source>
        <translation>自動検出</translation>
    </message>
    <message>
        <source>Video memor&amp;y</source>
        <translation>ビデオメモリ(&amp;Y)</translation>
    </message>
    <message>
        <source>Megabytes; what Wine tells clients that there is</source>
        <translation>メガバイト。Wine がクライアントに伝える量</translation>
    </message>
    <message>
        <source>Looking for versions...</source>
        <translation>バージョンを探しています...</translation>
    </message>
    <message>
        <source>The versions could not be loaded: %1</source>
        <translation>バージョンを読み込めませんでした: %1</translation>
    </message>
    <message>
        <source>The server offers no versions</source>
        <translation>サーバーにバージョンがありません</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>A Development version of the launcher may be unstable. It is not recommended for users unless explicitly asked for by the developers. Are you sure want to select the Development version?</source>
        <translation>ランチャーの開発版は不安定な場合があります。開発者から特に依頼された場合のみお勧めします。本当に開発版を選びますか?</translation>
    </message>
    <message>
        <source>If you choose to ignore certificate errors you will not be warned about potential security incidents in the future. It is not recommended unless you are sure you are on a safe network.

Are you sure you want to continue?</source>
        <translation>証明書のエラーを無視すると、今後セキュリティ上の問題が警告されなくなります。安全なネットワークであると確信できる場合以外はお勧めしません。

本当に続けますか?</translation>
    </message>
    <message>
        <source> MB/s</source>
        <translation> MB/s</translation>
    </message>
    <message>
        <source>None</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>Limit o&amp;f all downloads together:</source>
        <translation>全ダウンロードの合計上限(&amp;F):</translation>
    </message>
    <message>
        <source>0 is no limit</source>
        <translation>0 は無制限</translation>
    </message>
    <message>
        <source>&amp;Keep downloads until no client runs:</source>
        <translation>クライアントの終了後にダウンロード(&amp;K):</translation>
    </message>
    <message>
        <source>Nothing is downloaded while you play; it goes on afterwards</source>
        <translation>プレイ中は何もダウンロードせず、終了後に再開します</translation>
    </message>
    <message>
        <source>Downloads are paused; the versions come when they go on.</source>
        <translation>ダウンロードは一時停止中です。再開するとバージョンが表示されます。</translation>
    </message>
</context>
<context>
    <name>SimpleGui</name>
    <message>
        <source>Server list - Velkor Launcher</source>
        <translation>サーバー一覧 - Velkor ランチャー</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>ToolsMenu</name>
    <message>
        <source>&amp;Tools</source>
        <translation>ツール(&amp;T)</translation>
    </message>
    <message>
        <source>Download &amp;limit</source>
        <translation>ダウンロードの上限(&amp;L)</translation>
    </message>
    <message>
        <source>Use existing &amp;game files...</source>
        <translation>既存のゲームファイルを使う(&amp;G)...</translation>
    </message>
    <message>
        <source>Launch &amp;options...</source>
        <translation>起動オプション(&amp;O)...</translation>
    </message>
    <message>
        <source>&amp;Report for the support...</source>
        <translation>サポート用レポート(&amp;R)...</translation>
    </message>
    <message>
        <source>Resume &amp;downloads</source>
        <translation>ダウンロードを再開(&amp;D)</translation>
    </message>
    <message>
        <source>Pause &amp;downloads</source>
        <translation>ダウンロードを一時停止(&amp;D)</translation>
    </message>
    <message>
        <source>%1 MB/s</source>
        <translation>%1 MB/s</translation>
    </message>
    <message>
        <source>None</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>Sho&amp;w the log...</source>
        <translation>ログを表示(&amp;W)...</translation>
    </message>
</context>
<context>
    <name>TransferMeter</name>
    <message>
        <source>%1/s on average</source>
        <translation>平均 %1/秒</translation>
    </message>
    <message>
        <source>%1, about %2 left</source>
        <translation>%1、残り約 %2</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 分</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 時間 %2 分</translation>
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
        <translation>準備完了</translation>
    </message>
    <message>
        <source>%1 is ready</source>
        <translation>%1 の準備ができました</translation>
    </message>
    <message>
        <source>The update has ended.</source>
        <translation>更新が終わりました。</translation>
    </message>
    <message>
        <source>%1 could not be updated</source>
        <translation>%1 を更新できませんでした</translation>
    </message>
</context>
<context>
    <name>UpdateDialog</name>
    <message>
        <source>Version %1 of the launcher is available. This launcher was installed by your system: please update it with the system&apos;s package manager.</source>
        <translation>ランチャーのバージョン %1 があります。このランチャーはシステムによってインストールされたので、システムのパッケージ管理で更新してください。</translation>
    </message>
    <message>
        <source>Velkor Launcher Update</source>
        <translation>Velkor ランチャーの更新</translation>
    </message>
    <message>
        <source>Downloading new version %1</source>
        <translation>新しいバージョン %1 をダウンロードしています</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>再試行</translation>
    </message>
    <message>
        <source> Update will be applied automatically in %2 seconds.</source>
        <translation> %2 秒後に自動的に適用されます。</translation>
    </message>
    <message>
        <source>The launcher goes on without it in %1 seconds.</source>
        <translation>%1 秒後に更新せずに続けます。</translation>
    </message>
    <message>
        <source>Downloading binary index for new version %1</source>
        <translation>新しいバージョン %1 のファイル一覧をダウンロードしています</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be downloaded.</source>
        <translation>新しいバージョンのファイル一覧をダウンロードできませんでした。</translation>
    </message>
    <message>
        <source>The list of the new version&apos;s files could not be saved.</source>
        <translation>新しいバージョンのファイル一覧を保存できませんでした。</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries</source>
        <translation>新しいランチャーをダウンロードしています</translation>
    </message>
    <message>
        <source>Downloading new launcher binaries (%1%)</source>
        <translation>新しいランチャーをダウンロードしています (%1 %)</translation>
    </message>
    <message>
        <source>The new version could not be downloaded.</source>
        <translation>新しいバージョンをダウンロードできませんでした。</translation>
    </message>
    <message>
        <source>The new version could not be downloaded: %1</source>
        <translation>新しいバージョンをダウンロードできませんでした: %1</translation>
    </message>
    <message>
        <source>New version available</source>
        <translation>新しいバージョンがあります</translation>
    </message>
    <message>
        <source>The Velkor launcher has downloaded an update (version %1). Press OK to apply the update or Cancel to stay on the current version.</source>
        <translation>Velkor ランチャーは更新 (バージョン %1) をダウンロードしました。適用するには OK を、今のバージョンのままにするにはキャンセルを押してください。</translation>
    </message>
    <message>
        <source>The new version cannot be installed: %1</source>
        <translation>新しいバージョンをインストールできません: %1</translation>
    </message>
</context>
<context>
    <name>UpdaterStarter</name>
    <message>
        <source>it has no updater.</source>
        <translation>更新プログラムが含まれていません。</translation>
    </message>
    <message>
        <source>the updater could not be copied.</source>
        <translation>更新プログラムをコピーできませんでした。</translation>
    </message>
    <message>
        <source>the updater could not be started.</source>
        <translation>更新プログラムを起動できませんでした。</translation>
    </message>
</context>
<context>
    <name>Verifier</name>
    <message>
        <source>is a link</source>
        <translation>はリンクです</translation>
    </message>
    <message>
        <source>is a folder</source>
        <translation>はフォルダーです</translation>
    </message>
    <message>
        <source>is no regular file</source>
        <translation>は通常のファイルではありません</translation>
    </message>
    <message>
        <source>is empty</source>
        <translation>は空です</translation>
    </message>
    <message>
        <source>is too short</source>
        <translation>は短すぎます</translation>
    </message>
    <message>
        <source>is too long</source>
        <translation>は長すぎます</translation>
    </message>
    <message>
        <source>cannot be read</source>
        <translation>は読み取れません</translation>
    </message>
    <message>
        <source>has the wrong content</source>
        <translation>は内容が違います</translation>
    </message>
    <message>
        <source>Looking at the cache</source>
        <translation>キャッシュを調べています</translation>
    </message>
    <message>
        <source>%1 of %2 files (%3 of %4), %5</source>
        <translation>%1 / %2 ファイル (%3 / %4)、%5</translation>
    </message>
</context>
<context>
    <name>VerifierGui</name>
    <message>
        <source>Shared Cache</source>
        <translation>共有キャッシュ</translation>
    </message>
    <message>
        <source>&amp;Remove files that nothing needs</source>
        <translation>不要なファイルを削除(&amp;R)</translation>
    </message>
    <message>
        <source>Files of builds and servers that are not kept up to date any more</source>
        <translation>もう更新されないビルドやサーバーのファイル</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>Verifying reads every file and compares it with what the game&apos;s makers have published.</source>
        <translation>確認では、すべてのファイルを読み取り、ゲームの開発元が公開した内容と比較します。</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>結果</translation>
    </message>
    <message>
        <source>What is found is listed here.</source>
        <translation>見つかったものはここに表示されます。</translation>
    </message>
    <message>
        <source>&amp;Verify</source>
        <translation>確認(&amp;V)</translation>
    </message>
    <message>
        <source>&amp;Move...</source>
        <translation>移動(&amp;M)...</translation>
    </message>
    <message>
        <source>Moves the cache to another folder, such as one on a larger disk</source>
        <translation>より大きなディスクなど、別のフォルダーにキャッシュを移動します</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>閉じる(&amp;C)</translation>
    </message>
    <message>
        <source>The cache is in %1</source>
        <translation>キャッシュは %1 にあります</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>キャンセル(&amp;C)</translation>
    </message>
    <message>
        <source>Reading the indexes</source>
        <translation>一覧を読み込んでいます</translation>
    </message>
    <message>
        <source>All files that were checked are as they should be.</source>
        <translation>確認したファイルはすべて正常です。</translation>
    </message>
    <message>
        <source>Damaged files were found. The next refresh fetches them again.</source>
        <translation>壊れたファイルが見つかりました。次の更新で取得し直します。</translation>
    </message>
    <message>
        <source>%1 is not needed</source>
        <translation>%1 は不要です</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>ほか %1 件</translation>
    </message>
    <message>
        <source>Where should the cache go?</source>
        <translation>キャッシュをどこに置きますか?</translation>
    </message>
    <message>
        <source>The cache cannot be moved while clients are running</source>
        <translation>クライアントの実行中はキャッシュを移動できません</translation>
    </message>
    <message>
        <source>Moving the cache</source>
        <translation>キャッシュを移動しています</translation>
    </message>
    <message>
        <source>The cache has been moved.</source>
        <translation>キャッシュを移動しました。</translation>
    </message>
    <message>
        <source>The cache is where it was.</source>
        <translation>キャッシュは元の場所にあります。</translation>
    </message>
    <message>
        <source>The cache is where it was: %1</source>
        <translation>キャッシュは元の場所にあります: %1</translation>
    </message>
    <message>
        <source>Cancelling...</source>
        <translation>キャンセルしています...</translation>
    </message>
</context>
<context>
    <name>WebGui</name>
    <message>
        <source>Couldn&apos;t get GUI version info</source>
        <translation>画面のバージョン情報を取得できませんでした</translation>
    </message>
    <message>
        <source>See logs for details</source>
        <translation>詳しくはログをご覧ください</translation>
    </message>
    <message>
        <source>Can&apos;t get GUI version info when offline</source>
        <translation>オフラインでは画面のバージョン情報を取得できません</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>エラー</translation>
    </message>
    <message>
        <source>Couldn&apos;t establish gui version</source>
        <translation>画面のバージョンを確認できませんでした</translation>
    </message>
    <message>
        <source>Checking GUI version...</source>
        <translation>画面のバージョンを確認しています...</translation>
    </message>
    <message>
        <source>Please wait</source>
        <translation>お待ちください</translation>
    </message>
    <message>
        <source>Couldn&apos;t load the page</source>
        <translation>ページを読み込めませんでした</translation>
    </message>
    <message>
        <source>The page has ended unexpectedly several times. It is loaded again soon.</source>
        <translation>ページが予期せず何度も終了しました。まもなく読み込み直します。</translation>
    </message>
</context>
<context>
    <name>WineManager</name>
    <message>
        <source>Removing the old version</source>
        <translation>古いバージョンを削除しています</translation>
    </message>
    <message>
        <source>Wine: %1</source>
        <translation>Wine: %1</translation>
    </message>
    <message>
        <source>Preparing Wine...</source>
        <translation>Wine を準備しています...</translation>
    </message>
</context>
</TS>
